// Result columns are what compilation makes of their values, whichever way they were made.
#include "summary/result_columns.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "search/compiler.h"
#include "storage/family.h"

namespace qxe {
namespace {

void expect_equal(Column& made, Column& compiled, const char* what, int seed) {
  EXPECT_EQ(ArrayDataTypeEx(*made.vl), ArrayDataTypeEx(*compiled.vl));
  EXPECT_TRUE(CheckSame(*made.vl, *compiled.vl)) << what << ", values, seed " << seed;
  EXPECT_TRUE(CheckSame(*made.pv, *compiled.pv)) << what << ", rows, seed " << seed;
}

constexpr Numeric numeric(long value) {
  return {static_cast<unsigned long>(value), value < 0 ? -1L : 0L};
}

/// Values `spread` apart at most, some NULL; above a million also with others that are not whole.
class Values {
 public:
  Values(int seed, int rows, long spread) : random_(static_cast<unsigned>(seed)) {
    for (int i = 0; i < rows; ++i) {
      const long value = static_cast<long>(random_() % static_cast<unsigned long>(spread)) - 50;
      const bool null = random_() % 16 == 0;
      ints.push_back(null ? QX_NULL_INT : static_cast<int>(value));
      const double part = spread > 1000000 ? static_cast<double>(random_() % 4) / 4 : -0.0;
      doubles.push_back(null ? kNullDouble : static_cast<double>(value) + part);
      decimals.push_back(null ? Family<TNumericArray>::null() : numeric(value));
      if (spread > 1000000) decimals.back().hi += static_cast<long>(random_() % 2);
    }
  }

  std::vector<int> ints;
  std::vector<double> doubles;
  std::vector<Numeric> decimals;

 private:
  std::mt19937_64 random_;
};

TEST(ResultColumnsTest, RawValuesEqualCompiledOnes) {
  int seed = 0;
  for (const int rows : {0, 1, 2, 100, 5000}) {
    for (const long spread : {1L, 7L, 300L, 70000L, 2000000L, 2000000000L}) {
      Values values(++seed, rows, spread);
      Column ints = int_column(values.ints.data(), rows);
      Column wanted = compile_column(QX_DT_INTEGER, rows, rows, values.ints.data(), true);
      expect_equal(ints, wanted, "ints", seed);
      Column doubles = double_column(values.doubles.data(), rows);
      wanted = compile_column(QX_DT_DOUBLE, rows, rows, values.doubles.data(), true);
      expect_equal(doubles, wanted, "doubles", seed);
      Column decimals = decimal_column(values.decimals.data(), rows, {3, QX_ROUND_DOWN});
      wanted = compile_column(QX_DT_DECIMAL, rows, rows, values.decimals.data(), true);
      expect_equal(decimals, wanted, "decimals", seed);
      EXPECT_EQ(static_cast<TNumericArray&>(*decimals.vl).GetScale(), 3);
    }
  }
}

TEST(ResultColumnsTest, DoublesBeyondEveryTableAreCompiled) {
  const std::vector<double> values{1e300, -1e300, 3, NAN, INFINITY, -INFINITY, -0.0, 0.0, 1e18};
  const int rows = static_cast<int>(values.size());
  Column made = double_column(values.data(), rows);
  Column wanted = compile_column(QX_DT_DOUBLE, rows, rows, values.data(), true);
  expect_equal(made, wanted, "doubles", 0);
}

TEST(ResultColumnsTest, UsedValuesEqualCompiledOnes) {
  int seed = 0;
  for (const int rows : {0, 1, 50, 3000}) {
    for (const int values : {1, 2, 40, 200000}) {
      std::mt19937 random(static_cast<unsigned>(++seed));
      Block<double> listed = make_block<double>(values);
      for (int i = 0; i < values; ++i) listed[i] = i == 0 ? kNullDouble : i * 0.5;
      TDoubleArray list(values, std::move(listed));
      list.SetExtendType(QX_DT_DATE);
      list.FUserArea[20] = 'x';
      Block<int> numbers = make_row_numbers(rows);
      std::vector<double> raw;
      for (int i = 1; i <= rows; ++i) {
        numbers[i] = static_cast<int>(random() % static_cast<unsigned>(values));
        raw.push_back(list.values()[numbers[i]]);
      }
      Column made = used_values_column(list, std::move(numbers), rows);
      Column wanted = compile_column(QX_DT_DATE, rows, rows, raw.data(), true);
      expect_equal(made, wanted, "numbers", seed);
      EXPECT_EQ(made.vl->FUserArea[20], 0);
    }
  }
}

}  // namespace
}  // namespace qxe
