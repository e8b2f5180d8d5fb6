// The detail of a filter: its values within a set, by value and by count.
#include <algorithm>
#include <map>

#include "support/engine_test.h"
#include "support/naive_model.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

/// A decimal has its info in front.
Cell read_cell(int type, const char* bytes) {
  const auto read = [&](auto value) {
    memcpy(&value, bytes, sizeof value);
    return value;
  };
  switch (type) {
    case QX_DT_INTEGER: return ints({read(0)}).cells[0];
    case QX_DT_STRING: return std::string(bytes);
    case QX_DT_DECIMAL: {
      const NumericInfo info = read(NumericInfo{});
      bytes += sizeof info;
      return from_numeric(read(Numeric{}), info.scale);
    }
    default: return doubles({read(0.0)}).cells[0];
  }
}

using Counted = std::pair<Cell, int>;

class DetailTest : public EngineTest {};

class RandomDetailTest : public DetailTest, public testing::WithParamInterface<int> {
 protected:
  /// All values of a column, or those that rows have, with their counts; by value.
  static std::vector<Counted> values(const NaiveModel& model, const Column& column,
                                     const std::string& name, const std::vector<int>& rows,
                                     bool all) {
    std::map<Cell, int> counts;
    if (all) {
      counts[normal_form({}, column.type)] = 0;
      for (const Cell& cell : column.cells) counts[cell] = 0;
    }
    for (const int row : rows) ++counts[model.cell(name, row)];
    return {counts.begin(), counts.end()};
  }
};

struct ListKind {
  int order, direction, kind;
};

void expect_list(int handle, const ListKind& list, std::vector<Counted> wanted) {
  if (list.order != 0) {
    std::stable_sort(wanted.begin(), wanted.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
  }
  if (list.direction != 0) std::reverse(wanted.begin(), wanted.end());
  const int size = static_cast<int>(wanted.size());
  for (int position = 1; position <= size; ++position) {
    const auto& [value, count] = wanted[static_cast<size_t>(position - 1)];
    int type = 0, rows = 0;
    alignas(Numeric) char cell[4096];
    ASSERT_EQ(RQXGetDetailCount(handle, list.order, list.direction, list.kind, position, &rows), 0);
    ASSERT_EQ(rows, count) << "position " << position;
    ASSERT_EQ(
        RQXGetDetailValue(handle, list.order, list.direction, list.kind, position, &type, cell), 0);
    ASSERT_EQ(read_cell(type, cell), value) << "position " << position;
  }
  for (const int outside : {0, -1, size + 1}) {
    int rows = 0;
    EXPECT_EQ(RQXGetDetailCount(handle, list.order, list.direction, list.kind, outside, &rows),
              QX_ERROR_SUMMARY_PARAMETER);
  }
}

TEST_P(RandomDetailTest, EqualsTheNaiveModel) {
  RandomData random(static_cast<unsigned>(GetParam()));
  const Columns columns = random.table(random.chance(10) ? 0 : 1 + random.below(300));
  const NaiveModel model(columns);
  const TestTable table(columns);
  for (int round = 0; round < 20; ++round) {
    const NamedColumn& column = columns[static_cast<size_t>(random.below(7))];
    const std::vector<int> rows = random.set_of(model.total_rows());
    const auto all = values(model, column.column, column.name, rows, true);
    const auto present = values(model, column.column, column.name, rows, false);
    int type = 0, count = 0, distinct = 0;
    const int handle = RQXOpenDetailInfo(table.id(), table.add_set(rows), table.filter(column.name),
                                         &type, &count, &distinct);
    ASSERT_GT(handle, 0);
    EXPECT_EQ(type, column.column.type);
    EXPECT_EQ(count, static_cast<int>(all.size()));
    EXPECT_EQ(distinct, static_cast<int>(present.size()));
    const bool sparse = all.size() / 8 > rows.size();
    for (const int order : {0, 1}) {
      for (const int direction : {0, 1}) {
        expect_list(handle, {order, direction, 0}, sparse ? present : all);
        expect_list(handle, {order, direction, 1}, present);
      }
    }
    ASSERT_FALSE(HasFailure()) << column.name << ", seed " << GetParam() << "\n"
                               << to_text(columns);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomDetailTest, testing::Range(1, 13));

TEST_F(DetailTest, OneIsOpenAtATime) {
  const TestTable table({{"a", ints({5, 5, 7})}, {"d", dates({"2024/03/01", "", ""})}});
  int out = 0;
  char text[4096];
  const auto open = [&](const std::string& name) {
    return RQXOpenDetailInfo(table.id(), -1, table.filter(name), &out, &out, &out);
  };
  const auto text_of = [&](int handle, int position) {
    return RQXGetDetailValueStr(handle, 1, 0, 1, position, &out, text);
  };
  expect_failure(text_of(1, 1), QX_ERROR_DETAIL, "Failed to make detailvalue");
  expect_failure(RQXGetDetailCount(1, 0, 0, 0, 1, &out), QX_ERROR_DETAIL,
                 "Failed to make detailcount");
  EXPECT_EQ(RQXCloseDetailInfo(1), 0);
  const int first = open("a");
  const int second = open("d");
  EXPECT_EQ(second, first + 1);
  expect_failure(text_of(first, 1), QX_ERROR_SUMMARY_HANDLE, "Failed to open handle");
  expect_failure(RQXCloseDetailInfo(first), QX_ERROR_SUMMARY_HANDLE, "Failed to open handle");
  EXPECT_EQ(text_of(second, 2), 0);
  EXPECT_STREQ(text, "2024/03/01");
  EXPECT_EQ(out, QX_DT_DATE);
  expect_failure(text_of(second, 3), QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : Row(3)");
  EXPECT_EQ(RQXCloseDetailInfo(second), 0);
  expect_failure(text_of(second, 1), QX_ERROR_DETAIL);

  open("a");
  expect_failure(RQXOpenDetailInfo(table.id(), 99, 1, &out, &out, &out), QX_ERROR_NO_SET);
  EXPECT_EQ(text_of(second + 1, 1), QX_ERROR_DETAIL);  // a failed open has closed it
  expect_failure(RQXOpenDetailInfo(table.id(), 1, 9, &out, &out, &out), QX_ERROR_NO_FILTER);
  expect_failure(RQXOpenDetailInfo(99, 1, 1, &out, &out, &out), QX_ERROR_NO_TABLE);
  open("a");
  EXPECT_EQ(RQXCloseDetailInfo(-1), 0);
}

TEST_F(DetailTest, EndsWithItsTableAndItsValues) {
  const TestTable table({{"a", ints({5, 5, 7})}});
  int type = 0, count = 0;
  char value[4096];
  int handle = RQXOpenDetailInfo(table.id(), -1, 1, &type, &count, &count);
  int other = 6;
  ASSERT_GE(RQXOverwriteRealEx(table.id(), 1, 1, 1, 1, &other), 0);
  expect_failure(RQXGetDetailValue(handle, 0, 0, 0, 2, &type, value), QX_ERROR_DETAIL);
  EXPECT_EQ(RQXGetDetailCount(handle, 0, 0, 0, 2, &count), 0);
  EXPECT_EQ(count, 2);
  ASSERT_EQ(RQXDeleteRealFilter(table.id(), 1), 0);
  expect_failure(RQXGetDetailValue(handle, 0, 0, 0, 2, &type, value), QX_ERROR_NO_FILTER);
  ASSERT_EQ(RQXDeleteTable(table.id()), 0);
  expect_failure(RQXGetDetailCount(handle, 0, 0, 0, 2, &count), QX_ERROR_DETAIL);
}

}  // namespace
}  // namespace qxe::test
