// Column compilation and accommodation against plain sets, for all families and both drivers.
#include "search/compiler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "parallel/smpengine.h"
#include "search/k_way_compile.h"
#include "search/value_dictionary.h"
#include "storage/family.h"
#include "storage/filters.h"
#include "tables/table_collection.h"

namespace qxe {
namespace {

using Random = std::mt19937;

template <class Call>
int code_of(Call&& call) {
  try {
    call();
  } catch (const CQXException& failure) {
    return failure.ErrorCode();
  }
  return 0;
}

// What a value is to the model: NULL is the lowest, the two zeros are one.
int plain(int value) {
  return value;
}
double plain(double value) {
  return std::isnan(value) ? -std::numeric_limits<double>::infinity() : value;
}
std::string plain(const char* value) {
  return value == nullptr ? "" : value;
}
std::pair<long, unsigned long> plain(const Numeric& value) {
  return {value.hi, value.lo};
}

/// Raw values of one family in a mix of shapes.
template <class Array>
class Values {
 public:
  using Value = typename Family<Array>::Value;

  Values(int count, int shape, unsigned seed) : random_(seed) {
    texts_.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) values_.push_back(draw(shape));
  }

  const std::vector<Value>& raw() const { return values_; }
  int size() const { return static_cast<int>(values_.size()); }
  static int type() { return Family<Array>::kDataType; }
  static int width() { return sizeof(Value); }

  auto distinct() const {
    std::set<decltype(plain(Value{}))> all;
    for (const Value& value : values_) all.insert(plain(value));
    return all;
  }

 private:
  // Shapes: few values, a middling number, nearly all distinct, one value, agreeing at first.
  static constexpr long kDistinct[] = {5, 3000, 1L << 40, 1, 1L << 40};

  Value draw(int shape) {
    const long number = static_cast<long>((uint64_t{random_()} << 32 | random_()) %
                                          static_cast<uint64_t>(kDistinct[shape]));
    if (shape != 3 && random_() % 16 == 0) return special();
    return made_of(number, shape == 4, Value{});
  }

  Value special() {
    const auto choices = specials(Value{});
    return choices[random_() % choices.size()];
  }

  static std::vector<int> specials(int) {
    return {QX_NULL_INT, 0, -1, QX_NULL_INT + 1, 2147483647};
  }
  static std::vector<double> specials(double) {
    constexpr double kMax = std::numeric_limits<double>::max();
    return {kNullDouble, std::nan(""), 0.0, -0.0, -1.5, kMax, -kMax, 5e-324, HUGE_VAL};
  }
  std::vector<const char*> specials(const char*) {
    return {nullptr, "", " ", "\xff\xfe", "12345678", "123456789", "1234567", long_text_.c_str()};
  }
  static std::vector<Numeric> specials(Numeric) {
    constexpr long kMin = std::numeric_limits<long>::min();
    return {Family<TNumericArray>::null(),
            {0, 0},
            {~0ul, -1},
            {1ul << 63, -1},
            {1ul << 63, 0},
            {5, kMin + 1},
            {~0ul, 7},
            {0, -3},
            {1, -3},
            {~0ul >> 1, -1}};
  }

  int made_of(long number, bool, int) { return static_cast<int>(number * 7919); }
  double made_of(long number, bool, double) { return static_cast<double>(number - 100) / 100; }
  const char* made_of(long number, bool agreeing, const char*) {
    texts_.push_back((agreeing ? "the same beginning of every one " : "") +
                     std::to_string(number % 3) + " " + std::to_string(number));
    return texts_.back().c_str();
  }
  Numeric made_of(long number, bool agreeing, Numeric) {
    return {static_cast<unsigned long>(number), agreeing ? 1L << 40 : 0};
  }

  Random random_;
  std::vector<std::string> texts_;
  std::string long_text_ = std::string(5000, 'x') + "end";
  std::vector<Value> values_;
};

template <class Array>
class CompileTest : public testing::Test {
 protected:
  /// Every shape at sizes below and above all thresholds.
  template <class Body>
  static void for_all_inputs(Body&& body) {
    unsigned seed = 1;
    for (const int size : {1, 2, 40, 1500, 20000, 70000}) {
      for (int shape = 0; shape < 5; ++shape, ++seed) {
        SCOPED_TRACE(testing::Message() << "size " << size << " shape " << shape);
        body(Values<Array>(size, shape, seed));
      }
    }
  }

  /// The list must hold the distinct values in order, and the numbers must name the raw values.
  template <class Wanted, class List>
  static void expect_compiled(const Values<Array>& values, const Wanted& wanted, const int* numbers,
                              const List& list, int size) {
    ASSERT_EQ(size, static_cast<int>(wanted.size()));
    int place = 0;
    for (const auto& value : wanted) ASSERT_EQ(plain(list[place++]), value) << place;
    for (int i = 0; i < values.size(); ++i) {
      ASSERT_EQ(plain(list[numbers[i]]), plain(values.raw()[static_cast<size_t>(i)])) << i;
    }
  }

  static CompiledColumn compiled(const Values<Array>& values, bool mpp) {
    return (mpp ? MppCompile(values.size(), values.type(), values.width(), values.raw().data())
                : Compile(values.size(), values.type(), values.width(), values.raw().data()));
  }

  static std::unique_ptr<TBaseArray> array_of(const CompiledColumn& column) {
    using Value = typename Family<Array>::Value;
    Block<char> list = make_block<char>(column.unique * static_cast<long>(sizeof(Value)));
    memcpy(list.get(), column.value_list.get(), static_cast<size_t>(column.unique) * sizeof(Value));
    return make_value_array(Family<Array>::kDataType, column.unique, std::move(list));
  }
};

using Families = testing::Types<TIntArray, TDoubleArray, TStrArray, TNumericArray>;
TYPED_TEST_SUITE(CompileTest, Families);

TYPED_TEST(CompileTest, GivesAscendingDistinctValuesAndTheirNumbers) {
  using Value = typename Family<TypeParam>::Value;
  this->for_all_inputs([&](const Values<TypeParam>& values) {
    const auto wanted = values.distinct();
    auto with_null = wanted;
    with_null.insert(plain(Family<TypeParam>::null()));
    for (const bool mpp : {false, true}) {
      const CompiledColumn compiled = this->compiled(values, mpp);
      this->expect_compiled(values, wanted, compiled.row_pointers.get(),
                            reinterpret_cast<const Value*>(compiled.value_list.get()),
                            compiled.unique);
      // A column has NULL first, and rows from 1 on.
      const int total = values.size() + 3;
      const Column column =
          compile_column(values.type(), values.size(), total, values.raw().data(), mpp);
      const auto list = view_of(static_cast<const TypeParam&>(*column.vl));
      const int* const pv = std::as_const(*column.pv).PIntAr();
      this->expect_compiled(values, with_null, pv + 1, list, list.size);
      EXPECT_EQ(pv[0] + pv[total - 2] + pv[total - 1] + pv[total], 0);
    }
    // The same in several sources, as an import has them.
    const long third = values.size() / 3;
    std::vector<int> numbers(values.raw().size());
    std::vector<ValueSource<TypeParam>> sources;
    for (const auto& [begin, end] : {std::pair{0L, third}, std::pair{third, third},
                                     std::pair{third, static_cast<long>(values.size())}}) {
      sources.push_back({values.raw().data() + begin, end - begin, numbers.data() + begin});
    }
    const auto list = sort_distinct<TypeParam>(sources, ENG->run_threads());
    this->expect_compiled(values, wanted, numbers.data(), list.values.get(), list.size);
  });
}

TYPED_TEST(CompileTest, MergesRunsWithAnyFanIn) {
  using Value = typename Family<TypeParam>::Value;
  unsigned seed = 1;
  for (const int size : {1, 2, 3, 100, 1025, 2100}) {
    for (const int k : {2, 3, 7, 1024}) {
      const Values<TypeParam> values(size, static_cast<int>(seed % 5), seed);
      ++seed;
      int* numbers = nullptr;
      Value* list = nullptr;
      const int found = k_way_compile<TypeParam>(size, k, values.raw().data(), &numbers, &list);
      const Block<int> own_numbers(numbers);
      const Block<Value> own_list(list);
      this->expect_compiled(values, values.distinct(), numbers, list, found);
    }
  }
}

TYPED_TEST(CompileTest, DictionaryCodesFollowFirstAppearance) {
  this->for_all_inputs([&](const Values<TypeParam>& values) {
    ValueDictionary<TypeParam> dictionary;
    std::vector<int> codes(values.raw().size());
    dictionary.codes_of(values.raw().data(), values.size(), codes.data());
    std::set<decltype(plain(values.raw()[0]))> seen;
    for (size_t i = 0; i < codes.size(); ++i) {
      if (seen.insert(plain(values.raw()[i])).second) {
        ASSERT_EQ(codes[i], static_cast<int>(seen.size()) - 1);
      }
      ASSERT_EQ(plain(dictionary.values()[codes[i]]), plain(values.raw()[i]));
      ASSERT_EQ(dictionary.code_of(Family<TypeParam>::normalized(values.raw()[i])), codes[i]);
    }
    EXPECT_EQ(dictionary.size(), static_cast<int>(seen.size()));
  });
}

TYPED_TEST(CompileTest, AccommodatedColumnsShareOneListAndKeepTheirValues) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    const int size = seed % 8 == 0 ? 60000 : static_cast<int>(seed * 3);
    const Values<TypeParam> left(size, static_cast<int>(seed % 5), seed);
    const Values<TypeParam> right(static_cast<int>(seed) * 500, static_cast<int>(seed % 3),
                                  seed + 1000);
    CompiledColumn first = this->compiled(left, false);
    CompiledColumn second = this->compiled(right, false);
    const auto list1 = this->array_of(first);
    const auto list2 = this->array_of(second);
    list1->FUserArea[TBaseArray::kUserAreaSize - 1] = 77;
    TIntArray pv1(left.size(), std::move(first.row_pointers));
    TIntArray pv2(right.size(), std::move(second.row_pointers));
    const auto merged =
        (seed % 2 == 0 ? AccommodationMain : MppAccommodationMain)(pv1, *list1, pv2, *list2);
    if (left.distinct() == right.distinct()) {
      EXPECT_EQ(merged, nullptr);
      continue;
    }
    auto wanted = left.distinct();
    wanted.merge(right.distinct());
    ASSERT_NE(merged, nullptr);
    EXPECT_EQ(merged->FUserArea[TBaseArray::kUserAreaSize - 1], 77);
    const auto list = view_of(static_cast<const TypeParam&>(*merged));
    this->expect_compiled(left, wanted, pv1.PIntAr(), list, list.size);
    this->expect_compiled(right, wanted, pv2.PIntAr(), list, list.size);
  }
}

TEST(AccommodationTest, RefusesListsThatCannotBeMerged) {
  TIntArray pv(1, true);
  const TIntArray integers(1, true);
  const TDoubleArray doubles(1, true);
  const TIntArray empty(0, true);
  const TBaseArray bare;
  EXPECT_EQ(code_of([&] { AccommodationMain(pv, integers, pv, doubles); }), QX_ERROR_MERGE_TYPE);
  EXPECT_EQ(code_of([&] { MppAccommodationMain(pv, integers, pv, empty); }), QX_ERROR_PARAMETER);
  EXPECT_NE(code_of([&] { AccommodationMain(pv, bare, pv, bare); }), 0);
}

constexpr int kMaxInt = std::numeric_limits<int>::max();

// One value allows a range below 1008: 1005 with the two slots more and NULL's.
TEST(AddressTest, TakesTheTableForNarrowRanges) {
  const std::pair<std::vector<int>, bool> cases[] = {
      {{QX_NULL_INT, QX_NULL_INT}, false},
      {{5}, true},
      {{0, 1012}, true},
      {{0, 1013}, false},
      {{QX_NULL_INT, 0, 1013}, false},
      {{7, QX_NULL_INT, -3, 7}, true},
      {{-kMaxInt, kMaxInt, QX_NULL_INT}, false},
      {{QX_NULL_INT + 1, QX_NULL_INT, QX_NULL_INT + 3}, true},
      {{kMaxInt, kMaxInt - 70, kMaxInt - 1}, true}};
  for (const auto& [data, addressed] : cases) {
    SCOPED_TRACE(testing::PrintToString(data));
    const int n = static_cast<int>(data.size());
    _RawIntArrayRangeInfo range;
    EXPECT_EQ(WillBeCompiledBySorting(QX_DT_INTEGER, n, data.data(), &range), addressed);
    const auto column = Compile(n, QX_DT_INTEGER, 4, data.data(), &range);
    const int* const list = reinterpret_cast<const int*>(column.value_list.get());
    const std::set<int> wanted(data.begin(), data.end());
    EXPECT_EQ(std::vector<int>(list, list + column.unique),
              std::vector<int>(wanted.begin(), wanted.end()));
    for (int i = 0; i < n; ++i) {
      EXPECT_EQ(list[column.row_pointers[i]], data[static_cast<size_t>(i)]);
    }
  }
}

TEST(CompileFailureTest, NamesTheFault) {
  const int data[] = {1};
  struct {
    int n, type, width, code;
  } const cases[] = {{0, QX_DT_INTEGER, 4, QX_ERROR_NO_RECORD},
                     {1, QX_DT_INTEGER, 8, QX_ERROR_DATA_WIDTH},
                     {1, QX_DT_STRING, 4, QX_ERROR_DATA_WIDTH},
                     {1, 9, 4, QX_ERROR_TYPE_MISMATCH}};
  for (const auto& [n, type, width, code] : cases) {
    EXPECT_EQ(code_of([&] { Compile(n, type, width, data); }), code);
    EXPECT_EQ(code_of([&] { MppCompile(n, type, width, data); }), code);
  }
  EXPECT_EQ(code_of([&] { GetIntRange(-1, data); }), QX_ERROR_NEGATIVE_ROWS);
  EXPECT_EQ(code_of([&] { GenFilter2(1, "", QX_DT_INTEGER, 1, 4, data); }), QX_ERROR_FILTER_NAME);
  EXPECT_EQ(code_of([&] { GenFilter2(1, "a", QX_DT_INTEGER, 1, 8, data); }), QX_ERROR_DATA_WIDTH);
}

TEST(GenFilterTest, RecordsTheExactTypeAndNumbersRowsFromOne) {
  const double data[] = {2.5, kNullDouble, 1.0};
  for (const auto generate : {GenFilter2, MppGenFilter2}) {
    const auto filter = generate(7, "day of", QX_DT_DATE, 3, 8, data);
    EXPECT_EQ(filter->FFilterID, 7);
    EXPECT_STREQ(filter->FFilterName, "day_of");
    EXPECT_EQ(filter->data_type(), QX_DT_DATE);
    const int* const pv = filter->PVL->PIntAr();
    EXPECT_EQ(std::vector<int>(pv, pv + filter->PVL->FArraySize), (std::vector<int>{0, 2, 0, 1}));
  }
}

}  // namespace
}  // namespace qxe
