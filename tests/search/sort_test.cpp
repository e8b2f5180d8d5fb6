// The sorting primitives against std::stable_sort, on the calling thread and on the pool, along
// every path: counted keys, buckets with one pass and with several, narrow sets, joined keys.
#include "search/sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <numeric>
#include <random>
#include <set>

#include "search/multi_key_sort.h"
#include "search/radix_info.h"
#include "support/case_name.h"
#include "tables/realtables.h"

namespace qxe {
namespace {

using test::case_name;
using Ints = std::vector<int>;

/// Value numbers of rows 1 to `rows` behind the unused row 0; `distinct` of all that `values`
/// allow.
Ints random_pointers(std::mt19937& random, int rows, int values, int distinct) {
  Ints some(static_cast<size_t>(distinct));
  for (int& value : some) value = std::uniform_int_distribution(0, values - 1)(random);
  some.front() = 0;
  some.back() = values - 1;
  Ints pointers(static_cast<size_t>(rows) + 1);
  for (int& pointer : pointers) pointer = some[random() % some.size()];
  return pointers;
}

enum class Source { kAllRows, kShuffled, kRepeated };

Ints source_rows(std::mt19937& random, int rows, Source source) {
  Ints list(static_cast<size_t>(rows));
  std::iota(list.begin(), list.end(), 1);
  if (source == Source::kShuffled) std::shuffle(list.begin(), list.end(), random);
  if (source == Source::kRepeated) {
    for (int& row : list) row = 1 + static_cast<int>(random() % list.size());
  }
  return list;
}

struct Key {
  int dir;
  Ints pointers;
};

/// The last key dominates.
Ints stable_sorted(Ints rows, const std::vector<Key>& keys) {
  std::stable_sort(rows.begin(), rows.end(), [&](int left, int right) {
    for (size_t i = keys.size(); i-- > 0;) {
      const int l = keys[i].pointers[static_cast<size_t>(left)];
      const int r = keys[i].pointers[static_cast<size_t>(right)];
      if (l != r) return (l < r) == (keys[i].dir == QX_SORT_ASC);
    }
    return false;
  });
  return rows;
}

struct SortCase {
  const char* name;
  int rows;
  int values;
  int distinct;
  Source source = Source::kShuffled;
};

class CountingSortTest : public testing::TestWithParam<SortCase> {};

TEST_P(CountingSortTest, OrdersByRowPointerAndKeepsTheOrderOfEqualOnes) {
  const auto [name, rows, values, distinct, source_kind] = GetParam();
  std::mt19937 random(7);
  const Ints pointers = random_pointers(random, rows, values, distinct);
  const Ints source = source_rows(random, rows, source_kind);
  for (const int dir : {QX_SORT_ASC, QX_SORT_DESC}) {
    const Ints wanted = stable_sorted(source, {{dir, pointers}});
    for (const auto sort : {CountingSort, MppCountingSort}) {
      Ints sorted(source.size() + 1, -1);
      sort(dir, rows, source.data(), sorted.data(), pointers.data(), values);
      EXPECT_EQ(sorted.back(), -1) << "wrote behind the end";
      sorted.pop_back();
      // Not EXPECT_EQ, whose message would be as long as the list.
      EXPECT_TRUE(sorted == wanted) << (sort == CountingSort ? "serial " : "parallel ") << dir;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Paths, CountingSortTest,
    testing::Values(
        SortCase{"Empty", 0, 5, 5}, SortCase{"OneRow", 1, 5, 5}, SortCase{"OneValue", 100, 1, 1},
        SortCase{"FewValues", 1000, 7, 7},
        SortCase{"AllRowsInOrder", 5000, 300, 300, Source::kAllRows},
        SortCase{"RepeatedRows", 5000, 300, 300, Source::kRepeated},
        SortCase{"SomeOfTheValues", 50, 400, 9}, SortCase{"MostCountedKeys", 9000, 65536, 65536},
        SortCase{"OneKeyTooMany", 9000, 65537, 65537}, SortCase{"Buckets", 60000, 100000, 100000},
        SortCase{"BucketsOfAllRows", 60000, 100000, 100000, Source::kAllRows},
        SortCase{"BucketsOfRepeatedRows", 60000, 100000, 100000, Source::kRepeated},
        SortCase{"FewFullBuckets", 60000, 100000, 6},
        SortCase{"SparseBuckets", 3000, 1000000, 1000000},
        SortCase{"NarrowAtTheLimit", 976, 1000000, 1000000},
        SortCase{"NarrowOfFewRows", 6, 1000000, 6}, SortCase{"LongKeys", 300000, 1 << 28, 1 << 16},
        SortCase{"LongestKeys", 70000, INT_MAX, 70000}),
    case_name<SortCase>);

TEST(CountingSortFailureTest, RefusesOtherDirections) {
  const Ints rows = {1};
  const Ints pointers = {0, 0};
  Ints out(1);
  for (const auto sort : {CountingSort, MppCountingSort}) {
    for (const int dir : {-1, 2}) {
      try {
        sort(dir, 1, rows.data(), out.data(), pointers.data(), 1);
        ADD_FAILURE() << dir;
      } catch (const CQXException& failure) {
        EXPECT_EQ(failure.ErrorCode(), QX_ERROR_PARAMETER);
      }
    }
  }
}

TEST(CountingSortFailureTest, ReportsEveryFailedAllocation) {
  std::mt19937 random(3);
  const Ints pointers = random_pointers(random, 5000, 100000, 5000);
  const Ints source = source_rows(random, 5000, Source::kShuffled);
  const Ints wanted = stable_sorted(source, {{QX_SORT_ASC, pointers}});
  Ints out(source.size());
  int failed = 0;
  for (bool done = false; !done; failed += done ? 0 : 1) {
    fail_allocation_after(failed, false);
    try {
      MppCountingSort(QX_SORT_ASC, 5000, source.data(), out.data(), pointers.data(), 100000);
      done = true;
    } catch (const CQXException& failure) {
      ASSERT_EQ(failure.ErrorCode(), QX_ERROR_OUT_OF_MEMORY);
    }
  }
  fail_allocation_after(-1, false);
  EXPECT_GE(failed, 3);
  EXPECT_EQ(out, wanted);
}

TEST(CountingStepsTest, CountSumAndMove) {
  const Ints pointers = {0, 2, 0, 2, 1};
  const Ints rows = {4, 3, 2, 1};
  Ints counts(4, 99);
  CountupNExist(4, rows.data(), 4, pointers.data(), counts.data());
  EXPECT_EQ(counts, (Ints{1, 1, 2, 0}));
  Ints starts(4);
  Aggregate(QX_SORT_DESC, 4, counts.data(), starts.data());
  EXPECT_EQ(starts, (Ints{3, 2, 0, 0}));
  Aggregate(QX_SORT_ASC, 4, counts.data(), counts.data());
  EXPECT_EQ(counts, (Ints{0, 1, 2, 4}));
  Ints out(4);
  MoveRecsForSort(4, rows.data(), pointers.data(), out.data(), starts.data());
  EXPECT_EQ(out, (Ints{3, 1, 4, 2}));
  CountupNExist2(5, pointers.data(), 4, counts.data());
  EXPECT_EQ(counts, (Ints{2, 1, 2, 0}));
  EXPECT_THROW(Aggregate(2, 4, counts.data(), starts.data()), CQXException);
}

struct RadixCase {
  const char* name;
  uint64_t keys;
  long rows;
  int first_bits;
  int low_bits;
  int low_passes;
};

class RadixInfoTest : public testing::TestWithParam<RadixCase> {};

TEST_P(RadixInfoTest, DividesTheBitsOfAKey) {
  const RadixCase& wanted = GetParam();
  RadixInfo info{};
  EXPECT_EQ(build_n_filter_radix_info(wanted.keys, wanted.rows, &info),
            wanted.low_passes > 1 ? 3 : 2);
  EXPECT_EQ(info.first_bits, wanted.first_bits);
  EXPECT_EQ(info.low_bits, wanted.low_bits);
  EXPECT_EQ(info.low_passes, wanted.low_passes);
}

// With the cache that the engine assumes when nothing is set: 1 MiB, lines of 64 bytes.
INSTANTIATE_TEST_SUITE_P(
    Keys, RadixInfoTest,
    testing::Values(RadixCase{"HalfAndHalf", 200001, 10000000, 9, 9, 1},
                    RadixCase{"LowBitsForShortBuckets", 1000001, 10000000, 9, 11, 1},
                    RadixCase{"UniqueKeys", 10000001, 10000000, 10, 14, 1},
                    RadixCase{"FewBits", 9, 1, 4, 0, 1}, RadixCase{"OneKey", 1, 5, 4, 0, 1},
                    RadixCase{"LongKeys", 5000000000, 10000000, 9, 24, 2},
                    RadixCase{"LongestKeys", uint64_t{1} << 63, 10000000, 9, 54, 5},
                    RadixCase{"LongKeysOfFewRows", 5000000000, 100, 4, 29, 3},
                    RadixCase{"TooFewRowsForItsCounters", 1000001, 2000, 4, 16, 2}),
    case_name<RadixCase>);

/// Filters as a sort sees them: row pointers and the length of the value list.
class Filters {
 public:
  void add(const Ints& pointers, int values) {
    auto filter = std::make_unique<TFilter>();
    filter->PVL = new TIntArray(static_cast<int>(pointers.size()), false);
    std::copy(pointers.begin(), pointers.end(), filter->PVL->PIntAr());
    filter->VL = new TIntArray(values, true);
    pointers_.push_back(filter.get());
    filters_.push_back(std::move(filter));
  }
  TFilter* const* list() const { return pointers_.data(); }

 private:
  std::vector<std::unique_ptr<TFilter>> filters_;
  std::vector<TFilter*> pointers_;
};

struct KeysCase {
  const char* name;
  int rows;
  Ints sizes;  // of the value lists
};

class MultiKeySortTest : public testing::TestWithParam<KeysCase> {};

TEST_P(MultiKeySortTest, OrdersByTheLastKeyFirst) {
  const auto& [name, rows, sizes] = GetParam();
  for (const Source source_kind : {Source::kAllRows, Source::kShuffled, Source::kRepeated}) {
    std::mt19937 random(11);
    Filters filters;
    std::vector<Key> keys;
    Ints dirs;
    for (const int size : sizes) {
      keys.push_back({static_cast<int>(random() % 2),
                      random_pointers(random, rows, size, std::min(size, 1000))});
      filters.add(keys.back().pointers, size);
      dirs.push_back(keys.back().dir);
    }
    const Ints source = source_rows(random, rows, source_kind);
    Ints sorted(source.size(), -1);
    SortForMultiItem(static_cast<int>(sizes.size()), rows, source.data(), filters.list(),
                     dirs.data(), sorted.data());
    EXPECT_TRUE(sorted == stable_sorted(source, keys)) << static_cast<int>(source_kind);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Paths, MultiKeySortTest,
    testing::Values(KeysCase{"NoKeyCopies", 100, {}}, KeysCase{"NoRows", 0, {3, 3}},
                    KeysCase{"OneKey", 500, {40}}, KeysCase{"OneRow", 1, {3, 1000, 2}},
                    KeysCase{"CountedKeys", 3000, {4, 1, 30, 2}},
                    KeysCase{"BucketsWithOnePass", 30000, {30, 40, 900}},
                    KeysCase{"BucketsWithSeveralPasses", 30000, {60000, 2001, 13}},
                    KeysCase{"LongKeysOfFewRows", 40, {60000, 2001, 13}},
                    KeysCase{"TwoGroups", 5000, {9, 60000, 40000, 7, 50000, 60000}},
                    KeysCase{"ThreeGroups", 2000, Ints(9, 50000)},
                    KeysCase{"MostKeys", 700, Ints(512, 3)},
                    KeysCase{"ListsOfNullOnly", 200, Ints(100, 1)}),
    case_name<KeysCase>);

TEST(TableSortTest, SeesValuesThatWaitToBeMerged) {
  constexpr int kRows = 200;
  TRealTable table(1, "table", kRows);
  Ints values(kRows);
  std::iota(values.begin(), values.end(), 1);
  const int id = table.AddFilter2(0, "n", QX_DT_INTEGER, kRows, sizeof(int), values.data());
  TFilter* const filter = table.GetFilter(id);
  const int root = table.GetCurrentSetID();
  const int filters[] = {id, 0};
  const int dirs[] = {QX_SORT_ASC, 0};
  int least = 0;
  const auto overwrite_last_row = [&] {
    --least;
    ASSERT_EQ(filter->UpdateTVLFill(kRows - 1, 1, &least, table.root_set()), 0);
    ASSERT_EQ(filter->pending(), 1);
  };
  const auto first_row = [&](int set) { return table.GetSet(set)->PIntAr()[0]; };
  overwrite_last_row();
  EXPECT_EQ(first_row(table.SortByField(id, root, QX_SORT_ASC)), kRows);
  overwrite_last_row();
  EXPECT_EQ(first_row(table.MppSortByField(id, root, QX_SORT_ASC)), kRows);
  overwrite_last_row();
  EXPECT_EQ(first_row(table.MppIntegratedSortByField(root, filters, dirs)), kRows);
}

TEST(BitMapSortTest, OrdersRowsByNumberAndDropsDuplicates) {
  std::mt19937 random(5);
  for (const int total : {1, 31, 32, 63, 64, 65, 1000}) {
    for (int round = 0; round < 20; ++round) {
      Ints rows(1 + random() % static_cast<unsigned>(2 * total));
      for (int& row : rows) row = 1 + static_cast<int>(random() % static_cast<unsigned>(total));
      const int n = static_cast<int>(rows.size());
      if (n < total >> 5) continue;
      const std::set<int> distinct(rows.begin(), rows.end());
      Ints sorted(rows.size());
      sorted.resize(
          static_cast<size_t>(BitMapSort(QX_SORT_ASC, total, n, rows.data(), sorted.data())));
      EXPECT_EQ(sorted, Ints(distinct.begin(), distinct.end()));
      sorted.resize(rows.size());
      sorted.resize(
          static_cast<size_t>(BitMapSort(QX_SORT_DESC, total, n, rows.data(), sorted.data())));
      EXPECT_EQ(sorted, Ints(distinct.rbegin(), distinct.rend()));
    }
  }
}

TEST(BitMapSortTest, KeepsDuplicatesOfASetThatIsSmallAgainstItsTable) {
  const Ints rows = {900, 7, 32, 7, 1};
  Ints sorted(5);
  EXPECT_EQ(BitMapSort(QX_SORT_ASC, 1000, 5, rows.data(), sorted.data()), 5);
  EXPECT_EQ(sorted, (Ints{1, 7, 7, 32, 900}));
  EXPECT_EQ(BitMapSort(QX_SORT_DESC, 1000, 5, rows.data(), sorted.data()), 5);
  EXPECT_EQ(sorted, (Ints{900, 32, 7, 7, 1}));
}

TEST(BitMapSortTest, RefusesOtherDirectionsButForNoRows) {
  const Ints rows = {1};
  Ints out(1);
  EXPECT_EQ(BitMapSort(2, 1, 0, rows.data(), out.data()), 0);
  for (const int total : {1, 1000}) {
    EXPECT_THROW(BitMapSort(2, total, 1, rows.data(), out.data()), CQXException);
  }
}

}  // namespace
}  // namespace qxe
