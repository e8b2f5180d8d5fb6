// The sorting primitives against std::stable_sort, on the calling thread and on the pool, along
// every path: counted keys, buckets with one pass and with several, narrow sets, joined keys.
#include "search/sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>

#include "search/multi_key_sort.h"
#include "storage/filters.h"
#include "support/case_name.h"

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
    testing::Values(SortCase{"Empty", 0, 5, 5}, SortCase{"OneValue", 100, 1, 1},
                    SortCase{"FewValues", 1000, 7, 7},
                    SortCase{"AllRowsInOrder", 5000, 300, 300, Source::kAllRows},
                    SortCase{"RepeatedRows", 5000, 300, 300, Source::kRepeated},
                    SortCase{"MostCountedKeys", 9000, 65536, 65536},
                    SortCase{"OneKeyTooMany", 9000, 65537, 65537},
                    SortCase{"Buckets", 60000, 100000, 100000},
                    SortCase{"BucketsOfAllRows", 60000, 100000, 100000, Source::kAllRows},
                    SortCase{"BucketsOfRepeatedRows", 60000, 100000, 100000, Source::kRepeated},
                    SortCase{"FewFullBuckets", 60000, 100000, 6},
                    SortCase{"SparseBuckets", 3000, 1000000, 1000000},
                    SortCase{"NarrowAtTheLimit", 976, 1000000, 1000000},
                    SortCase{"NarrowOfFewRows", 6, 1000000, 6},
                    SortCase{"LongKeys", 300000, 1 << 28, 1 << 16},
                    SortCase{"LongestKeys", 70000, INT_MAX, 70000}),
    case_name<SortCase>);

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

}  // namespace
}  // namespace qxe
