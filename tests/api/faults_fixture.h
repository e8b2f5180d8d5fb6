// What the walks through failures share: a database to work on, an operation and the walk through
// all the places where memory, files or threads can fail it.
#pragma once

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>

#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {

constexpr int kRows = 60;

/// What an operation works on: a table with a column of each type, and files to read.
class Base {
 public:
  Base() : columns_(RandomData(7).table(kRows)), table_(columns_, "base") {
    table_.add_set({9, 8, 7, 3, 2, 1});
    table_.add_set({40});
    RQXChangeCurrentSetID(table_.id(), 1);
    for (const NamedColumn& named : columns_) values_.emplace_back(new RawValues(named.column));
    write_file("format.txt", "double\t2\tROUNDUP\ndecimal\t1\tROUNDHALFUP\n");
    write_file("values.txt", "1\n2\n\n4\n");
    write_file("texts.bin", std::string("\0\0\0\3new\0\0\0\0\0\0\0\1x", 16));
    write_rows();
    require(RQXSaveRealTableAs("", "stored", id()), "RQXSaveRealTableAs");
    write_file("inside.dat", std::string(100, ' '));
    const int tables[] = {id(), -1};
    long end = 0;
    require(RQXSaveRealTable2("inside.dat", 100, tables, &end), "RQXSaveRealTable2");
  }

  int id() const { return table_.id(); }
  const TestTable& table() const { return table_; }
  size_t columns() const { return columns_.size(); }
  const NamedColumn& column(size_t i) const { return columns_[i]; }
  int filter(size_t i) const { return static_cast<int>(i) + 1; }
  /// Values of column i as calls take them.
  RawValues& values(size_t i) const { return *values_[i]; }

 private:
  /// Rows to append, a few pages of them, and catalogs with the table's decimals and shorter ones.
  void write_rows() const {
    const std::string columns = "I\t1\ta\nF\t1\tb\nD\t1\tc\nT\t1\td\nA\t1\te\nE\t1\tf\nN\t1\tg\t";
    const int scale = columns_[6].column.scale;
    write_file("rows.cat", "//CSV\n" + columns + std::to_string(scale) + "\n");
    write_file("digits.cat", "//CSV\n" + columns + std::to_string(scale - 1) + "\n");
    std::string text;
    for (int i = 0; i < 30; ++i) {
      const std::string number = std::to_string(i % 20);
      text += number + "," + number + ".5,2024/3/1,12:00:" + number + "," + std::string(300, 'x') +
              number + ",2024/3/1 12:00:" + number + ",-" + number + ".1\n";
    }
    write_file("rows.csv", text);
  }

  const Columns columns_;
  const TestTable table_;
  std::vector<std::unique_ptr<RawValues>> values_;
};

struct Operation {
  const char* name;
  /// The call under test, with nothing around it that allocates.
  std::function<int(const Base&)> call;
  /// Whether it did its work; the text is compared with that of a run without a fault.
  std::function<std::string(const Base&, int result)> outcome;
  std::function<void(const Base&, int result)> undo;
  /// Status of a file that cannot be used, besides QX_ERROR_FILE.
  int file_status = QX_ERROR_FILE;
};

/// Calls `run(fault)` with every fault until it tells that the fault did not fire: each failure by
/// itself, and all from one on, in longer steps where there are many.
template <class Run>
void walk(Run&& run) {
  for (const FaultKind kind : {FaultKind::kAllocation, FaultKind::kFileCall, FaultKind::kThread}) {
    for (const bool persistent : {false, true}) {
      bool fired = true;
      for (long after = 0; fired && !testing::Test::HasFailure();
           after += persistent && after > 50 ? 7 : 1) {
        const Fault fault{kind, after, persistent};
        SCOPED_TRACE(to_text(fault));
        fired = run(fault);
      }
    }
  }
}

class FaultsTest : public EngineTest, public testing::WithParamInterface<Operation> {
 protected:
  FaultsTest() {
    RQXSetSavedFlag(1, 1, 1);
    drain_ring();
  }

  /// One call with a fault. Returns whether it fired.
  bool run(const Fault& fault) {
    const Operation& operation = GetParam();
    RQXSetSavedFlag(1, 1, 1);
    const std::string before = database_text();
    int status = 0;
    bool fired = false;
    {
      const ArmedFault armed(fault);
      status = operation.call(base_);
      fired = armed.fired();
    }
    if (status >= 0 || !fired) {
      expect_success(status);
    } else {
      expect_failure_of(fault.kind, status);
      EXPECT_EQ(database_text(), before);
    }
    return fired;
  }

  void run_without_fault() {
    drain_ring();
    expect_success(GetParam().call(base_));
  }

  void learn_outcome() {
    wanted_status_ = GetParam().call(base_);
    if (wanted_status_ >= 0) wanted_ = GetParam().outcome(base_, wanted_status_);
    GetParam().undo(base_, wanted_status_);
  }

 private:
  void expect_success(int status) {
    if (wanted_status_ < 0) {
      EXPECT_EQ(hex(status), hex(wanted_status_));
    } else if (status < 0) {
      ADD_FAILURE() << "status " << hex(status) << "; " << to_text(drain_ring());
    } else {
      EXPECT_EQ(GetParam().outcome(base_, status), wanted_);
    }
    GetParam().undo(base_, status);
  }

  void expect_failure_of(FaultKind kind, int status) {
    const std::vector<RingEntry> entries = drain_ring();
    const bool promised =
        status == wanted_status_ ||
        (kind == FaultKind::kFileCall ? status == QX_ERROR_FILE || status == GetParam().file_status
                                      : status == QX_ERROR_OUT_OF_MEMORY);
    EXPECT_TRUE(promised) << "status " << hex(status) << "; " << to_text(entries);
    EXPECT_TRUE(std::any_of(entries.begin(), entries.end(),
                            [&](const RingEntry& entry) { return entry.code == status; }))
        << "no entry " << hex(status) << "; " << to_text(entries);
  }

  const Base base_;
  int wanted_status_ = 0;
  std::string wanted_;
};

enum ColumnIndex : size_t { kInt, kDouble, kDate, kTime, kString, kDateTime, kDecimal };

using Rows = std::vector<int>;

inline std::string nothing(const Base&, int) {
  return "";
}
inline void keep(const Base&, int) {}

inline std::string rows_of_set(const Base& base, int set) {
  std::string text;
  for (const int row : base.table().rows(set)) text += std::to_string(row) + " ";
  return text;
}

inline void delete_set(const Base& base, int set) {
  if (set >= 0) require(RQXDeleteSet(base.id(), set), "RQXDeleteSet");
  RQXChangeCurrentSetID(base.id(), 1);
}

inline Operation adding_set(const char* name, std::function<int(const Base&)> call) {
  return {name, std::move(call), rows_of_set, delete_set};
}

inline std::string values_of_filter(const Base& base, int filter) {
  char name[256] = "";
  require(RQXGetFilterName(base.id(), filter, name), "RQXGetFilterName");
  std::string text = name;
  for (const std::string& value : base.table().texts(name)) text += " " + value;
  return text;
}

inline void delete_filter(const Base& base, int filter) {
  if (filter >= 0) require(RQXDeleteRealFilter(base.id(), filter), "RQXDeleteRealFilter");
}

inline std::string imported(const Base&, int table) {
  return table_text(table);
}
inline void delete_table(const Base&, int table) {
  if (table >= 0) require(RQXDeleteTable(table), "RQXDeleteTable");
}

/// All columns, and the pseudo columns.
inline int all_columns[] = {1, 2, 3, 4, 5, 6, 7, QX_FLT_TABLE_ID, QX_FLT_REC_NO, 0};
inline int own_columns[] = {1, 2, 3, 4, 5, 6, 7, 0};

}  // namespace qxe::test
