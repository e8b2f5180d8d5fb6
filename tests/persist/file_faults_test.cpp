// Files that cannot be written or read to the end: every call that fails on the way, devices that
// are full, files that may not grow, directories that have gone.
#include <signal.h>
#include <sys/resource.h>

#include <filesystem>

#include "qxe.h"
#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/random_data.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

constexpr int kManyRows = 70'000;  // arrays that go past the buffer

struct FilesCase {
  const char* name;
  int rows;
  const char* parent;  // of the directory that the files go to
};

class FileFaultsTest : public EngineTest, public testing::WithParamInterface<FilesCase> {
 protected:
  FileFaultsTest() : files_(GetParam().parent), working_(files_.path()) {
    RandomData random(3);
    const TestTable small(random.table(30), "small");
    small.add_set({3, 2, 1});
    std::vector<int> numbers(static_cast<size_t>(GetParam().rows));
    for (size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<int>(i * 7 % 50'021);
    const TestTable large({{"n", ints(numbers)}}, "large");
    EXPECT_EQ(save("db"), 0);
    file_ = read_file("db.QXD");
    contents_ = contents();
  }

  static int save(const char* name) {
    char dir[512] = "";
    return RQXSaveDBAs(dir, name);
  }

  /// What the engine holds: as text, when there is much of it as an image.
  std::string contents() const {
    if (GetParam().rows < kManyRows) return database_text();
    std::string image(file_.size() + 1'000'000, '\0');
    void* end = nullptr;
    EXPECT_EQ(RQXSaveDB2Mem(static_cast<long>(image.size()), image.data(), &end), 0);
    return image;
  }

  const std::string& saved_contents() const { return contents_; }
  const std::string& file() const { return file_; }

 private:
  TempDir files_;
  WorkingDirectory working_;
  std::string contents_;
  std::string file_;
};

bool is_told(const Fault& fault, int status) {
  if (fault.kind == FaultKind::kFileCall) return status == QX_ERROR_FILE || status == QX_ERROR_PATH;
  return status == QX_ERROR_OUT_OF_MEMORY;
}

/// Calls `run(fault)`, which returns whether the fault fired, for every call that can fail.
template <class Run>
void walk(const Run& run) {
  for (const FaultKind kind : {FaultKind::kAllocation, FaultKind::kFileCall}) {
    bool fired = true;
    for (long after = 0; fired && !testing::Test::HasFailure(); ++after) {
      const Fault fault{kind, after, true};
      SCOPED_TRACE(to_text(fault));
      fired = run(fault);
    }
  }
}

TEST_P(FileFaultsTest, AFailedLoadLeavesAnEmptyDatabaseAndTheNextOneWorks) {
  walk([&](const Fault& fault) {
    int status = 0;
    bool fired = false;
    {
      const ArmedFault armed(fault);
      status = RQXLoadDB("", "db");
      fired = armed.fired();
    }
    if (status < 0) {
      EXPECT_TRUE(is_told(fault, status)) << hex(status);
      EXPECT_EQ(RQXGetNTable(), 0);
    } else {
      EXPECT_TRUE(contents() == saved_contents());
    }
    EXPECT_EQ(hex(RQXLoadDB("", "db")), hex(0));
    EXPECT_TRUE(contents() == saved_contents());
    return fired;
  });
}

TEST_P(FileFaultsTest, AFailedSaveChangesNothing) {
  walk([&](const Fault& fault) {
    int status = 0;
    bool fired = false;
    {
      const ArmedFault armed(fault);
      status = save("other");
      fired = armed.fired();
    }
    const bool without_directory = status == 0 && !std::filesystem::exists("other.QXD");
    if (status < 0) {
      EXPECT_TRUE(is_told(fault, status)) << hex(status);
    } else if (!without_directory) {
      EXPECT_EQ(read_file("other.QXD"), file());
    }
    EXPECT_TRUE(contents() == saved_contents());
    std::filesystem::remove("other.QXD");
    return fired;
  });
}

TEST_P(FileFaultsTest, PartsOfATransferArePutTogether) {
  {
    const ArmedFault armed({FaultKind::kPart, 0, true});
    ASSERT_EQ(RQXLoadDB("", "db"), 0);
    ASSERT_EQ(save("other"), 0);
    EXPECT_EQ(armed.fired(), GetParam().rows == kManyRows);
  }
  EXPECT_TRUE(contents() == saved_contents());
  EXPECT_EQ(read_file("other.QXD"), file());
}

TEST_P(FileFaultsTest, AFullDeviceIsNoticed) {
  std::filesystem::create_symlink("/dev/full", "full.QXD");
  std::filesystem::create_symlink("/dev/full", "full.QXT");
  expect_failure(save("full"), QX_ERROR_FILE);
  expect_failure(RQXSaveRealTableAs("", "full", 2), QX_ERROR_FILE);
  expect_failure(RQXLoadDB("", "full"), QX_ERROR_FILE);
}

/// A limit on the size of files, which a write beyond it only notices by its status.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

TEST_P(FileFaultsTest, AFileThatMayNotGrowIsNoticed) {
  const size_t step = file().size() / 50 + 1;
  for (size_t bytes = 0; bytes < file().size(); bytes += step) {
    SCOPED_TRACE(bytes);
    int status = 0;
    {
      const FileSizeLimit limit(bytes);
      status = save("other");
    }
    expect_failure(status, QX_ERROR_FILE);
    EXPECT_EQ(read_file("other.QXD"), file().substr(0, bytes));
  }
  EXPECT_EQ(save("other"), 0);
  EXPECT_EQ(read_file("other.QXD"), file());
}

TEST_P(FileFaultsTest, ADirectoryThatHasGoneIsNoticed) {
  std::filesystem::create_directory("sub");
  char dir[512] = "sub";
  ASSERT_EQ(RQXSaveDBAs(dir, "db"), 0);
  std::filesystem::remove_all("sub");
  expect_failure(RQXSaveDB(), QX_ERROR_PATH, "Invalid Parameter : DBPath(");
  std::filesystem::create_directory("sub");
  EXPECT_EQ(RQXSaveDB(), 0);
  EXPECT_EQ(read_file("sub/db.QXD"), file());
}

/// Files in memory are written another way than others.
INSTANTIATE_TEST_SUITE_P(Files, FileFaultsTest,
                         testing::Values(FilesCase{"Small", 10, "/var/tmp"},
                                         FilesCase{"Large", kManyRows, "/var/tmp"},
                                         FilesCase{"LargeInMemory", kManyRows, "/dev/shm"}),
                         case_name<FilesCase>);

}  // namespace
}  // namespace qxe::test
