// Filters and sets: the tail of pending values and its merge, sorted sets, copies.
#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <set>
#include <tuple>

#include "search/compiler.h"
#include "storage/family.h"
#include "storage/filters.h"
#include "storage/setarray.h"

namespace qxe {
namespace {

/// A filter of integers with a model of its rows beside it.
class TailTest : public testing::TestWithParam<bool> {
 protected:
  void fill(int rows, int values) {
    std::vector<int> data;
    for (int row = 1; row <= rows; ++row) data.push_back(row % values * 10);
    filter_ = GenFilter2(1, "a", QX_DT_INTEGER, rows, sizeof(int), data.data());
    model_ = data;
    set_ = std::make_unique<TSetArray>(rows, false);
    set_->InitAsSet();
  }
  int read(int row) const {
    const int p = filter_->PVL->GetInt(row);
    return static_cast<const TIntArray&>(filter_->values_of(p)).GetInt(p < 0 ? -p : p);
  }
  int write(int row, int value) {
    model_[static_cast<size_t>(row - 1)] = value;
    return filter_->UseTVL(row - 1, 1, &value, false, GetParam(), nullptr, *set_);
  }
  void expect_rows() const {
    for (int row = 1; row <= set_->FArraySize; ++row) {
      ASSERT_EQ(read(row), model_[static_cast<size_t>(row - 1)]) << row;
    }
  }
  void expect_sorted_list() const {
    const auto& list = static_cast<const TIntArray&>(*filter_->VL);
    ASSERT_EQ(list.GetInt(0), QX_NULL_INT);
    for (int i = 1; i < list.FArraySize; ++i) ASSERT_LT(list.GetInt(i - 1), list.GetInt(i));
  }

  std::unique_ptr<TFilter> filter_;
  std::unique_ptr<TSetArray> set_;
  std::vector<int> model_;
};

TEST_P(TailTest, IsForTablesOfAHundredRowsAndMore) {
  fill(99, 5);
  EXPECT_EQ(filter_->CheckTVLUse(1), 0);
  fill(100, 5);
  EXPECT_EQ(filter_->CalcTVLSize(), 100);
  EXPECT_EQ(filter_->CheckTVLUse(1), 1);
  EXPECT_EQ(filter_->CheckTVLUse(101), 0);
}

TEST_P(TailTest, HoldsNewValuesUntilTheMerge) {
  fill(200, 5);
  const int known = filter_->VL->FArraySize;
  ASSERT_EQ(write(7, 20), 1);  // in the list already
  EXPECT_EQ(filter_->pending(), 0);
  ASSERT_EQ(write(8, 25), 1);
  ASSERT_EQ(write(9, 25), 1);  // the same new value again: an entry of its own
  ASSERT_EQ(write(10, QX_NULL_INT), 1);
  EXPECT_EQ(filter_->pending(), 2);
  EXPECT_EQ(filter_->PVL->GetInt(8), -1);
  expect_rows();
  EXPECT_EQ(filter_->MergeTVL(GetParam()), 1);
  EXPECT_EQ(filter_->MergeTVL(GetParam()), 0);
  EXPECT_EQ(filter_->VL->FArraySize, known + 1);
  EXPECT_EQ(filter_->PVL->GetInt(8), filter_->PVL->GetInt(9));
  expect_rows();
  expect_sorted_list();
}

TEST_P(TailTest, LastWriteToARowWins) {
  fill(200, 5);
  ASSERT_EQ(write(8, 25), 1);
  ASSERT_EQ(write(8, 10), 1);  // back to a known value: the entry stays behind
  filter_->MergeTVL(GetParam());
  expect_rows();
}

TEST_P(TailTest, AMergeThatRunsOutOfMemoryKeepsThePendingValues) {
  fill(200, 5);
  ASSERT_EQ(write(8, 25), 1);
  int failures = 0;
  for (bool merged = false; !merged && failures < 100;) {
    fail_allocation_after(failures, false);
    try {
      merged = filter_->MergeTVL(GetParam()) == 1;
    } catch (const CQXException& failure) {
      EXPECT_EQ(failure.ErrorCode(), QX_ERROR_OUT_OF_MEMORY);
      ++failures;
    }
    fail_allocation_after(-1, false);
    expect_rows();
  }
  EXPECT_GT(failures, 0);
  EXPECT_EQ(filter_->pending(), 0);
  expect_sorted_list();
}

TEST_P(TailTest, RandomEditsEqualTheModel) {
  fill(150, 7);
  std::mt19937 random(5);
  for (int i = 0; i < 2000; ++i) {
    const int row = 1 + static_cast<int>(random() % 150);
    const int value = random() % 10 == 0 ? QX_NULL_INT : static_cast<int>(random() % 500);
    ASSERT_EQ(write(row, value), 1) << "a full tail is merged and goes on";
    if (random() % 97 == 0) filter_->MergeTVL(GetParam());
  }
  expect_rows();
  filter_->MergeTVL(GetParam());
  expect_rows();
  expect_sorted_list();
}

TEST_P(TailTest, ManyNewValuesTakeTheFullPath) {
  fill(20000, 7);
  std::vector<int> values(10001, 3);
  EXPECT_EQ(filter_->UseTVL(0, 10001, values.data(), false, GetParam(), nullptr, *set_), 0);
  EXPECT_EQ(filter_->UseTVL(0, 20000, values.data(), true, GetParam(), nullptr, *set_), 0);
}

TEST_P(TailTest, AFullTailIsAsItWas) {
  fill(200, 5);
  std::vector<int> values(200);
  std::iota(values.begin(), values.end(), 1000);
  values[0] = 30;  // known
  EXPECT_EQ(filter_->UpdateTVL(0, 150, values.data(), *set_), 0);
  EXPECT_EQ(filter_->pending(), 149);
  std::copy_n(values.begin(), 150, model_.begin());
  EXPECT_EQ(filter_->UpdateTVL(140, 60, values.data() + 140, *set_), -1);
  EXPECT_EQ(filter_->pending(), 149);
  expect_rows();
}

TEST_P(TailTest, ABorrowedListGetsNone) {
  fill(200, 5);
  filter_->FVLBorrowed = true;
  const std::unique_ptr<TBaseArray> lender(filter_->VL);
  const int known = lender->FArraySize;
  EXPECT_EQ(write(8, 25), 0);
  EXPECT_EQ(filter_->pending(), 0);
  EXPECT_EQ(lender->FArraySize, known);
}

INSTANTIATE_TEST_SUITE_P(SerialAndParallel, TailTest, testing::Bool());

/// How many values a list of 5000 takes in: few join it in place, many make a new one.
struct TakeCase {
  const char* name;
  int type;
  int count;
};

class TakeValuesTest : public testing::TestWithParam<std::tuple<TakeCase, bool>> {
 protected:
  static constexpr int kRows = 5000;

  static std::string text_of(int number) {
    char text[16];
    snprintf(text, sizeof text, "t%08d", number);  // in the order of the numbers
    return text;
  }
  /// Raw values of a type that have the order of `numbers`.
  struct Raw {
    Raw(int type, const std::vector<int>& numbers) : type_(type), ints_(numbers) {
      for (const int number : numbers) {
        doubles_.push_back(number / 2.0);
        texts_.push_back(text_of(number));
        decimals_.push_back({static_cast<unsigned long>(number), 0});
      }
      for (const std::string& text : texts_) pointers_.push_back(text.c_str());
    }
    const void* data() const {
      switch (type_) {
        case QX_DT_INTEGER: return ints_.data();
        case QX_DT_STRING: return pointers_.data();
        case QX_DT_DECIMAL: return decimals_.data();
        default: return doubles_.data();
      }
    }
    int type_;
    std::vector<int> ints_;
    std::vector<double> doubles_;
    std::vector<std::string> texts_;
    std::vector<const char*> pointers_;
    std::vector<Numeric> decimals_;
  };

  void make(const std::vector<int>& numbers) {
    const Raw raw(type(), numbers);
    const int width = type() == QX_DT_INTEGER ? 4 : type() == QX_DT_DECIMAL ? 16 : 8;
    filter_ = GenFilter2(1, "a", type(), static_cast<int>(numbers.size()), width, raw.data());
  }
  /// Lets the filter take in ascending values.
  Block<int> take(const std::vector<int>& numbers) {
    const Raw raw(type(), numbers);
    const size_t bytes = numbers.size() * static_cast<size_t>(filter_->VL->FUnitSize);
    Block<char> values = make_block<char>(static_cast<long>(bytes));
    memcpy(values.get(), raw.data(), bytes);
    return filter_->numbers_of(std::move(values), static_cast<int>(numbers.size()),
                               std::get<1>(GetParam()));
  }
  /// Entry `i` of the value list as the number that stands for it; 0 for NULL.
  int entry(int i) const {
    return with_family(*filter_->VL, [&]<class Array>(const Array& list) {
      const auto value = view_of(list)[i];
      if constexpr (std::is_same_v<Array, TStrArray>) {
        return *value == '\0' ? 0 : atoi(value + 1);
      } else if constexpr (std::is_same_v<Array, TNumericArray>) {
        return static_cast<int>(value.lo);
      } else if constexpr (std::is_same_v<Array, TDoubleArray>) {
        return value < 0 ? 0 : static_cast<int>(value * 2);
      } else {
        return value == QX_NULL_INT ? 0 : value;
      }
    });
  }
  static int type() { return std::get<0>(GetParam()).type; }
  static int count() { return std::get<0>(GetParam()).count; }

  std::unique_ptr<TFilter> filter_;
};

TEST_P(TakeValuesTest, ListAndRowsFollow) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    std::mt19937 random(seed);
    const auto below = [&](int limit) {
      return 1 + static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    std::vector<int> rows(kRows);
    for (int& row : rows) row = below(20000);
    make(rows);
    std::set<int> wanted(rows.begin(), rows.end());
    std::set<int> news;
    const int highest = seed % 2 == 0 ? 20000 : 22000;
    while (news.size() < static_cast<size_t>(count())) news.insert(below(highest));
    const std::vector<int> more(news.begin(), news.end());
    const Block<int> numbers = take(more);
    wanted.insert(more.begin(), more.end());
    ASSERT_EQ(filter_->VL->FArraySize, static_cast<int>(wanted.size()) + 1);
    ASSERT_EQ(entry(0), 0);
    int i = 0;
    for (const int value : wanted) ASSERT_EQ(entry(++i), value);
    for (size_t n = 0; n < more.size(); ++n)
      ASSERT_EQ(entry(numbers[static_cast<long>(n)]), more[n]);
    for (int row = 1; row <= kRows; ++row) {
      ASSERT_EQ(entry(filter_->PVL->GetInt(row)), rows[static_cast<size_t>(row - 1)]);
    }
  }
}

TEST_P(TakeValuesTest, KnownValuesChangeNothing) {
  std::vector<int> rows(kRows);
  std::iota(rows.begin(), rows.end(), 1);
  make(rows);
  rows.resize(static_cast<size_t>(count()));
  const TBaseArray* const list = filter_->VL;
  const Block<int> numbers = take(rows);
  EXPECT_EQ(numbers[count() - 1], count());
  EXPECT_EQ(filter_->VL->FArraySize, kRows + 1);
  EXPECT_EQ(filter_->VL == list, count() <= 1000);
}

INSTANTIATE_TEST_SUITE_P(
    All, TakeValuesTest,
    testing::Combine(testing::Values(TakeCase{"OneInteger", QX_DT_INTEGER, 1},
                                     TakeCase{"FewIntegers", QX_DT_INTEGER, 900},
                                     TakeCase{"ManyIntegers", QX_DT_INTEGER, 4000},
                                     TakeCase{"FewDoubles", QX_DT_DOUBLE, 900},
                                     TakeCase{"ManyDoubles", QX_DT_DOUBLE, 4000},
                                     TakeCase{"FewStrings", QX_DT_STRING, 900},
                                     TakeCase{"ManyStrings", QX_DT_STRING, 4000},
                                     TakeCase{"FewDecimals", QX_DT_DECIMAL, 900},
                                     TakeCase{"ManyDecimals", QX_DT_DECIMAL, 4000}),
                     testing::Bool()),
    [](const auto& instance) {
      return std::string(std::get<0>(instance.param).name) +
             (std::get<1>(instance.param) ? "Parallel" : "Serial");
    });

TEST(StringTailTest, KeepsTextsThroughTheMerge) {
  std::vector<const char*> data(120, "b");
  auto filter = GenFilter2(1, "a", QX_DT_STRING, 120, sizeof(char*), data.data());
  TSetArray set(120, false);
  set.InitAsSet();
  char early[] = "a";
  char late[] = "zz";
  char* values[] = {early, late, nullptr};
  ASSERT_EQ(filter->UseTVL(10, 3, values, false, false, nullptr, set), 1);
  const auto text = [&](int row) {
    const int p = filter->PVL->GetInt(row);
    return std::string(
        static_cast<const TStrArray&>(filter->values_of(p)).GetPChar(p < 0 ? -p : p));
  };
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(text(11), "a");
    EXPECT_EQ(text(12), "zz");
    EXPECT_EQ(text(13), "");
    EXPECT_EQ(text(14), "b");
    filter->MergeTVL(true);
  }
}

TEST(FilterTest, CopiesAreDeepAndNamesChecked) {
  const double data[] = {2.5, 1.5};
  auto filter = GenFilter2(3, "a b", QX_DT_DATE, 2, sizeof(double), data);
  EXPECT_STREQ(filter->FFilterName, "a_b");
  filter->PVL->FUserArea[5] = 9;
  const auto copy = filter->CopyFilter(4, "c");
  EXPECT_EQ(copy->FFilterID, 4);
  EXPECT_EQ(copy->data_type(), QX_DT_DATE);
  EXPECT_EQ(copy->PVL->FUserArea[5], 0);
  EXPECT_EQ(copy->FOrgFltID, filter->FOrgFltID);
  EXPECT_NE(copy->VL, filter->VL);
  EXPECT_THROW(filter->CopyFilter(5, ""), CQXException);
  EXPECT_THROW(TFilter(1, std::string(256, 'x').c_str()), CQXException);
}

TEST(SortedSetTest, FollowsTheFilterAndItsOwners) {
  const int data[] = {30, QX_NULL_INT, 10, 30};
  auto filter = GenFilter2(1, "a", QX_DT_INTEGER, 4, sizeof(int), data);
  auto set = std::make_unique<TSetArray>(4, false);
  set->InitAsSet();
  auto* const sorted = new TSortedSetArray;
  sorted->initialize(set.get(), filter.get());
  sorted->Reclaim();
  EXPECT_EQ(std::vector<int>(sorted->PIntAr(), sorted->PIntAr() + 4),
            (std::vector<int>{2, 3, 1, 4}));
  EXPECT_EQ(sorted->null_count(), 1);
  EXPECT_EQ(set->GetSortedSet(filter.get()), sorted);
  EXPECT_EQ(copy_of(*set)->GetSortedSet(filter.get()), nullptr);
  filter->Taint();
  EXPECT_EQ(sorted->FArraySize, 0);
  sorted->Reclaim();
  EXPECT_EQ(sorted->FArraySize, 4);
  filter.reset();  // deletes the sorted set, which leaves the set
  EXPECT_EQ(set->GetSortedSet(nullptr), nullptr);
}

TEST(SetTest, CopyWithoutZeroesKeepsOrder) {
  TSetArray set(4, true);
  EXPECT_EQ(set.CopyWithout0()->FArraySize, 0);
  set.PutInt(1, 7);
  set.PutInt(3, 2);
  const auto kept = set.CopyWithout0();
  ASSERT_EQ(kept->FArraySize, 2);
  EXPECT_EQ(kept->GetInt(0), 7);
  EXPECT_EQ(kept->GetInt(1), 2);
}

}  // namespace
}  // namespace qxe
