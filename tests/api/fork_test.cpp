// A child process after fork() can use the engine: it has the tables, makes workers of its own for
// its first parallel work, and ends like any program.
#include <atomic>
#include <thread>

#include "support/child_process.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

constexpr int kForks = 60;
constexpr int kBusyForks = 15;  // each waits until the other threads let it in

/// Searches, sorts and imports with known results. The files to import are there.
class EngineWork {
 public:
  EngineWork()
      : table_({{"n", ints({5, 3, 9, 3, 7, 1})}, {"s", strings({"e", "c", "i", "c", "g", "a"})}}) {}

  int table() const { return table_.id(); }

  /// 0 when all is right, else the number of the wrong step.
  int run() const {
    if (table_.rows(table_.search("n", QX_OPE_GEQ, 5)) != std::vector<int>{1, 3, 5}) return 1;
    if (table_.rows(table_.sort("s")) != std::vector<int>{6, 2, 4, 1, 5, 3}) return 2;
    const int imported = RQXAddCatalogFile("", "c.cat");
    if (imported < 0) return 3;
    const auto texts = TestTable::existing(imported).texts("s");
    if (texts != std::vector<std::string>{"b", "a", "c"}) return 4;
    if (RQXDeleteTable(imported) != 0 || RQXPurgeSubsets(table()) != 0) return 5;
    return 0;
  }

 private:
  const TestTable table_;
};

class ForkTest : public EngineTest {
 protected:
  ForkTest() {
    write_file("c.cat", "//CSV\nI\t1\tn\nA\t1\ts\n");
    write_file("SrcData.dat", "2,b\n1,a\n2,c\n");
  }

  const EngineWork work_;
};

TEST_F(ForkTest, EveryChildWorksOnItsOwn) {
  for (int i = 0; i < kForks; ++i) {
    ASSERT_EQ(work_.run(), 0) << "parent before fork " << i;
    ASSERT_EQ(exit_status_of_child([&] { return work_.run(); }), 0) << "fork " << i;
  }
}

TEST_F(ForkTest, ChildrenThatDoNotCallEndToo) {
  EXPECT_EQ(exit_status_of_child([] { return 7; }), 7);
}

TEST_F(ForkTest, GrandchildrenWorkToo) {
  const auto grandchild = [&] {
    return work_.run() != 0 ? 10 : exit_status_of_child([&] { return work_.run(); });
  };
  EXPECT_EQ(exit_status_of_child(grandchild), 0);
  EXPECT_EQ(exit_status_of_child([&] { return exit_status_of_child([&] { return work_.run(); }); }),
            0);
}

TEST_F(ForkTest, AChildCanRestartTheEngine) {
  EXPECT_EQ(exit_status_of_child([] {
              if (RQXReInitializeMS() != 0 || RQXGetNTable() != 0) return 1;
              const TestTable table({{"n", ints({2, 1})}});
              return table.rows(table.sort("n")) == std::vector<int>{2, 1} ? 0 : 2;
            }),
            0);
  EXPECT_EQ(work_.run(), 0);
}

/// Calls the engine from a thread of its own until it is destroyed.
class BusyThread {
 public:
  template <class Body>
  explicit BusyThread(Body body)
      : thread_([this, body] {
          while (!stop_) {
            body();
            ++rounds_;
          }
        }) {
    while (rounds_ == 0) std::this_thread::yield();
  }
  ~BusyThread() {
    stop_ = true;
    thread_.join();
  }
  BusyThread(const BusyThread&) = delete;
  BusyThread& operator=(const BusyThread&) = delete;

 private:
  std::atomic<bool> stop_ = false;
  std::atomic<int> rounds_ = 0;
  std::thread thread_;
};

TEST_F(ForkTest, ChildrenWorkWhateverOtherThreadsOfTheParentDo) {
  const BusyThread working([&] { work_.run(); });
  const BusyThread logging([] { Log_message("parent.log", "%d", 1); });
  for (int i = 0; i < kBusyForks; ++i) {
    const int status = exit_status_of_child([&] {
      RQXClearDB();
      Log_message("child.log", "%d", 2);
      return EngineWork().run();
    });
    ASSERT_EQ(status, 0) << "fork " << i;
  }
}

TEST_F(ForkTest, ForkDoesNotWaitForALockThatACallLeft) {
  Numeric value = {};
  ASSERT_LT(RQXGetDataNumericR1(work_.table(), 99, 1, 0, &value), 0);  // keeps the engine locked
  EXPECT_EQ(exit_status_of_child([&] {
              if (RQXReInitializeMS() != 0) return 1;
              return RQXGetNTable() == 0 ? 0 : 2;
            }),
            0);
  ASSERT_EQ(RQXReInitializeMS(), 0);
  EXPECT_EQ(RQXGetNTable(), 0);
}

}  // namespace
}  // namespace qxe::test
