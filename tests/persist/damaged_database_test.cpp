// Files that are cut or changed: a load takes them or refuses them, what it takes is a table that
// works, and nothing else changes.
#include <string.h>

#include <filesystem>
#include <random>
#include <stdexcept>

#include "file_bytes.h"
#include "qxe.h"
#include "support/case_name.h"
#include "support/database_text.h"
#include "support/engine_test.h"
#include "support/files.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

StoredTable marked_table(int id, const std::string& name) {
  StoredTable table = table_of_all_types(id, name);
  table.filters[0].high_speed = 1;
  table.marks = {{0, 0, {2, 3, 1}, 1}, {1, 0, {3, 1}, 0}, {0, 4, {}, 0}};
  return table;
}

class DamagedDatabaseTest : public EngineTest {
 protected:
  DamagedDatabaseTest() {
    RQXAddRealTable("kept", 2);
    RQXSetSavedFlag(1, 1, 1);
    before_ = database_text();
  }

  void load_table(const std::string& bytes) {
    write_file("t.QXT", bytes);
    drain_ring();
    const int status = RQXLoadRealTable("", "t");
    std::filesystem::remove("t.QXT");  // a disk may wait for a file that another one replaces
    if (status < 0) {
      EXPECT_FALSE(drain_ring().empty());
    } else {
      use(status);
      RQXDeleteTable(status);
    }
    RQXSetSavedFlag(1, 1, 1);
    EXPECT_EQ(database_text(), before_);
  }

  void load_database(const std::string& bytes) {
    write_file("db.QXD", bytes);
    drain_ring();
    const int status = RQXLoadDB("", "db");
    std::filesystem::remove("db.QXD");
    EXPECT_EQ(status < 0, !drain_ring().empty());
    std::vector<int> tables(static_cast<size_t>(RQXGetNTable()));
    if (!tables.empty()) RQXGetTableIDList(tables.data());
    for (const int table : tables) use(table);
    const int next = RQXAddRealTable("next", 1);
    EXPECT_TRUE(next > 0 || next == QX_ERROR_TABLE_COUNT) << hex(next);
  }

 private:
  /// Work that looks at everything there is and changes a little.
  static void use(int table) {
    try {
      EXPECT_FALSE(database_text().empty());
    } catch (const std::runtime_error&) {
      drain_ring();  // a join may show columns that its parents no longer have
    }
    int filters[512] = {};
    const int count = RQXGetFilterIDList(table, filters);
    for (int i = 0; i < count; ++i) {
      const int set = RQXSortByField(table, filters[i], -1, QX_SORT_DESC);
      EXPECT_TRUE(set > 0 || set == QX_ERROR_SET_COUNT || set == QX_ERROR_NO_FILTER) << hex(set);
      RQXSetNotReal(table, set);
      RQXDupRealFilterEx(table, filters[i], QX_DT_STRING);
      alignas(16) char value[16] = "a";  // large enough for a value of any type
      RQXSearchByField(table, filters[i], 1, QX_OPE_GEQ, value, value);
    }
    for (int i = 0; i < count; ++i) {
      RQXFillRealExIntR1(table, filters[i], 1, 1, 1, 7);  // one of these fits
      RQXFillRealExStrR1(table, filters[i], 1, 1, 1, nullptr);
    }
    RQXInsertRealRows(table, 1, 2);
    RQXDeleteRealRows(table, 1, 1);
    RQXDeleteTable(RQXDuplicateRealTable("copy", table));
    RQXSaveRealTableAs("", "again", table);
    std::filesystem::remove("again.QXT");
  }

  std::string before_;
};

/// Calls `body` with the file, one of its numbers changed, for each of them and several values.
template <class Body>
void change_numbers(const StoredFile& file, const Body& body) {
  for (const StoredField& field : file.fields) {
    if (field.size != 4 && field.size != 8) continue;
    const size_t last = (field.count - 1) * field.size;
    for (const size_t element : {size_t{0}, last}) {
      int64_t value = 0;
      memcpy(&value, file.bytes.data() + field.offset + element, field.size);
      std::vector<int64_t> values = {-1, 0, 1, value + 1, value - 1, INT32_MAX, INT32_MIN};
      if (field.size == 8) values.insert(values.end(), {INT64_MAX, INT64_MIN, int64_t{1} << 40});
      for (const int64_t changed : values) {
        std::string bytes = file.bytes;
        memcpy(bytes.data() + field.offset + element, &changed, field.size);
        body(bytes);
      }
    }
  }
}

TEST_F(DamagedDatabaseTest, EachNumberOfATableChanged) {
  change_numbers(table_file(marked_table(1, "t")), [&](const std::string& bytes) {
    if (!HasFailure()) load_table(bytes);
  });
}

TEST_F(DamagedDatabaseTest, EachNumberOfADatabaseChanged) {
  StoredFile file = database_file({marked_table(1, "a"), marked_table(2, "b")});
  file.fields.resize(file.fields.size() * 6 / 10);  // all up to the second table's sets
  change_numbers(file, [&](const std::string& bytes) {
    if (!HasFailure()) load_database(bytes);
  });
}

/// Those of its join; there are too many others.
TEST_F(DamagedDatabaseTest, EachNumberOfAJoinChanged) {
  const std::vector<StoredTable> tables = {table_of_all_types(1, "a"), table_of_all_types(2, "b")};
  StoredFile file = database_file(tables, {}, {joins_by_integers(1, 2)[0]});
  const StoredFile without = database_file(tables);
  file.fields.erase(file.fields.begin(),
                    file.fields.begin() + static_cast<long>(without.fields.size()));
  change_numbers(file, [&](const std::string& bytes) {
    if (!HasFailure()) load_database(bytes);
  });
}

TEST_F(DamagedDatabaseTest, EachNumberOfANarrowDatabaseChanged) {
  change_numbers(database_file({marked_table(1, "a")}, {.word = 4}), [&](const std::string& bytes) {
    if (!HasFailure()) load_database(bytes);
  });
}

TEST_F(DamagedDatabaseTest, CutInEveryField) {
  const StoredFile file = table_file(marked_table(1, "t"));
  for (const StoredField& field : file.fields) {
    for (const size_t cut : {size_t{0}, size_t{1}, field.size * field.count / 2}) {
      SCOPED_TRACE(field.offset + cut);
      const std::string bytes = file.bytes.substr(0, field.offset + cut);
      write_file("t.QXT", bytes);
      expect_failure(RQXLoadRealTable("", "t"), QX_ERROR_FILE);
      std::filesystem::remove("t.QXT");
      load_database(bytes);
    }
  }
}

TEST_F(DamagedDatabaseTest, BytesChangedAtRandom) {
  const StoredFile table = table_file(marked_table(1, "t"));
  const StoredFile database = database_file({marked_table(1, "a"), marked_table(2, "b")});
  std::mt19937 random(3);
  for (int round = 0; round < 500 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    const auto changed = [&](std::string bytes) {
      for (int i = 0; i < 2; ++i) bytes[random() % bytes.size()] = static_cast<char>(random());
      return bytes;
    };
    load_database(changed(database.bytes));
    RQXClearDB();
    RQXAddRealTable("kept", 2);
    RQXSetSavedFlag(1, 1, 1);
    load_table(changed(table.bytes));
  }
}

struct Damage {
  const char* name;
  void (*change)(StoredTable& table);
};

class RefusedTableTest : public EngineTest, public testing::WithParamInterface<Damage> {};

TEST_P(RefusedTableTest, ByItsFormat) {
  StoredTable table = marked_table(1, "t");
  GetParam().change(table);
  write_file("t.QXT", table_file(table).bytes);
  expect_failure(RQXLoadRealTable("", "t"), QX_ERROR_FILE_FORMAT);
  EXPECT_EQ(RQXGetNTable(), 0);
}

std::vector<Damage> damages() {
  return {
      {"RowBeyondTheTable", [](StoredTable& t) { t.sets[1][0] = 4; }},
      {"RowZero", [](StoredTable& t) { t.sets[1][1] = 0; }},
      {"RowMissingInTheFirstSet",
       [](StoredTable& t) {
         t.sets[0] = {1, 3, 2};
       }},
      {"SetIdsTwice",
       [](StoredTable& t) {
         t.set_ids = {4, 4};
       }},
      {"SetIdsDescending",
       [](StoredTable& t) {
         t.set_ids = {4, 1};
       }},
      {"SetIdAboveTheLastIssued", [](StoredTable& t) { t.last_set = 3; }},
      {"CurrentSetMissing", [](StoredTable& t) { t.current_set = 2; }},
      {"NoSet",
       [](StoredTable& t) {
         t.sets.clear();
         t.set_ids.clear();
       }},
      {"FilterIdTwice", [](StoredTable& t) { t.filters[1].id = 1; }},
      {"FilterIdZero", [](StoredTable& t) { t.filters[0].id = 0; }},
      {"FilterIdAboveTheLastIssued", [](StoredTable& t) { t.last_filter = 8; }},
      {"ValueNumberBeyondTheList", [](StoredTable& t) { t.filters[0].pv[1] = 3; }},
      {"PendingValue", [](StoredTable& t) { t.filters[0].pv[1] = -1; }},
      {"NumberForRowZero", [](StoredTable& t) { t.filters[0].pv[0] = 1; }},
      {"RowPointerMissing", [](StoredTable& t) { t.filters[0].pv.pop_back(); }},
      {"NoValues", [](StoredTable& t) { t.filters[0].vl = std::vector<int>{}; }},
      {"NoNull",
       [](StoredTable& t) {
         t.filters[0].vl = std::vector<int>{1, 2, 3};
       }},
      {"IntegersDescending",
       [](StoredTable& t) {
         t.filters[0].vl = std::vector<int>{INT32_MIN, 5, 4};
       }},
      {"NotANumber",
       [](StoredTable& t) { std::get<std::vector<double>>(t.filters[1].vl)[2] = 0.0 / 0.0; }},
      {"StringsTwice",
       [](StoredTable& t) {
         t.filters[4].vl = std::vector<std::string>{"", "a", "a"};
       }},
      {"DecimalsDescending",
       [](StoredTable& t) { std::get<std::vector<Decimal128>>(t.filters[6].vl)[1].high = 1; }},
      {"TypeOfDoubles", [](StoredTable& t) { t.filters[1].vl_area.type = 6; }},
      {"ScaleOfDecimals", [](StoredTable& t) { t.filters[6].vl_area.scale = 39; }},
      {"RoundingOfDecimals", [](StoredTable& t) { t.filters[6].vl_area.rounding = 7; }},
      {"OtherValuesThanTold", [](StoredTable& t) { t.filters[0].vl_type = 6; }},
      {"NameWithoutEnd", [](StoredTable& t) { t.name = std::string(256, 'x'); }},
      {"FilterNameWithoutEnd", [](StoredTable& t) { t.filters[3].name = std::string(256, 'x'); }},
      {"MarkTwice", [](StoredTable& t) { t.marks[1] = t.marks[0]; }},
      {"MarkOfOtherSize", [](StoredTable& t) { t.marks[0].rows.pop_back(); }},
  };
}

INSTANTIATE_TEST_SUITE_P(All, RefusedTableTest, testing::ValuesIn(damages()), case_name<Damage>);

}  // namespace
}  // namespace qxe::test
