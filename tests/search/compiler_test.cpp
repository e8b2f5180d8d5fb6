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

  template <class Value>
  static void expect_compiled(const Values<Array>& values, const int* numbers, const Value* list,
                              int size) {
    const auto wanted = values.distinct();
    ASSERT_EQ(size, static_cast<int>(wanted.size()));
    int place = 0;
    for (const auto& value : wanted) ASSERT_EQ(plain(list[place++]), value) << place;
    for (int i = 0; i < values.size(); ++i) {
      ASSERT_EQ(plain(list[numbers[i]]), plain(values.raw()[static_cast<size_t>(i)])) << i;
    }
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
    const void* const raw = values.raw().data();
    for (const bool mpp : {false, true}) {
      SCOPED_TRACE(mpp);
      const auto column = mpp ? MppCompile(values.size(), values.type(), values.width(), raw)
                              : Compile(values.size(), values.type(), values.width(), raw);
      this->expect_compiled(values, column.row_pointers.get(),
                            reinterpret_cast<const Value*>(column.value_list.get()), column.unique);
    }
  });
}

TYPED_TEST(CompileTest, SortsSeveralSourcesFullOfDuplicatesIntoOneList) {
  this->for_all_inputs([&](const Values<TypeParam>& values) {
    const long third = values.size() / 3;
    std::vector<int> numbers(values.raw().size());
    std::vector<ValueSource<TypeParam>> sources;
    for (const auto& [begin, end] : {std::pair{0L, third}, std::pair{third, third},
                                     std::pair{third, static_cast<long>(values.size())}}) {
      sources.push_back({values.raw().data() + begin, end - begin, numbers.data() + begin});
    }
    const auto list = sort_distinct<TypeParam>(sources, ENG->run_threads());
    this->expect_compiled(values, numbers.data(), list.values.get(), list.size);
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
      this->expect_compiled(values, numbers, list, found);
    }
  }
  const Values<TypeParam> values(5, 0, seed);
  const auto faulty = [&](int n, int k) {
    return k_way_compile<TypeParam>(n, k, values.raw().data(), nullptr, nullptr);
  };
  EXPECT_EQ(faulty(0, 2), -1);
  EXPECT_EQ(faulty(0, 1), -1);
  EXPECT_EQ(faulty(5, 1), -2);
  EXPECT_EQ(faulty(5, 1025), -2);
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

TYPED_TEST(CompileTest, ColumnHasNullFirstAndRowsFromOne) {
  this->for_all_inputs([&](const Values<TypeParam>& values) {
    for (const bool mpp : {false, true}) {
      const int total = values.size() + 3;
      const Column column =
          compile_column(values.type(), values.size(), total, values.raw().data(), mpp);
      const auto list = view_of(static_cast<const TypeParam&>(*column.vl));
      auto wanted = values.distinct();
      wanted.insert(plain(Family<TypeParam>::null()));
      ASSERT_EQ(list.size, static_cast<int>(wanted.size()));
      int place = 0;
      for (const auto& value : wanted) ASSERT_EQ(plain(list[place++]), value);
      ASSERT_EQ(column.pv->FArraySize, total + 1);
      EXPECT_EQ(column.pv->GetInt(0), 0);
      for (int row = values.size() + 1; row <= total; ++row) EXPECT_EQ(column.pv->GetInt(row), 0);
      for (int row = 1; row <= values.size(); ++row) {
        ASSERT_EQ(plain(list[column.pv->GetInt(row)]),
                  plain(values.raw()[static_cast<size_t>(row) - 1]));
      }
    }
  });
}

TYPED_TEST(CompileTest, AccommodatedColumnsShareOneListAndKeepTheirValues) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    const int size = seed % 8 == 0 ? 60000 : static_cast<int>(seed * 3);
    const Values<TypeParam> left(size, static_cast<int>(seed % 5), seed);
    const Values<TypeParam> right(static_cast<int>(seed) * 500, static_cast<int>(seed % 3),
                                  seed + 1000);
    const auto compiled = [](const auto& values) {
      return Compile(values.size(), values.type(), values.width(), values.raw().data());
    };
    CompiledColumn first = compiled(left);
    CompiledColumn second = compiled(right);
    const auto list1 = this->array_of(first);
    const auto list2 = this->array_of(second);
    list1->FUserArea[TBaseArray::kUserAreaSize - 1] = 77;
    TIntArray pv1(left.size(), std::move(first.row_pointers));
    TIntArray pv2(right.size(), std::move(second.row_pointers));
    const auto merged =
        (seed % 2 == 0 ? AccommodationMain : MppAccommodationMain)(pv1, *list1, pv2, *list2);
    auto wanted = left.distinct();
    wanted.merge(right.distinct());
    if (left.distinct() == right.distinct()) {
      EXPECT_EQ(merged, nullptr);
      continue;
    }
    ASSERT_NE(merged, nullptr);
    const auto list = view_of(static_cast<const TypeParam&>(*merged));
    ASSERT_EQ(list.size, static_cast<int>(wanted.size()));
    int place = 0;
    for (const auto& value : wanted) ASSERT_EQ(plain(list[place++]), value);
    EXPECT_EQ(merged->FUserArea[TBaseArray::kUserAreaSize - 1], 77);
    for (int i = 0; i < left.size(); ++i) {
      ASSERT_EQ(plain(list[pv1.GetInt(i)]), plain(left.raw()[static_cast<size_t>(i)]));
    }
    for (int i = 0; i < right.size(); ++i) {
      ASSERT_EQ(plain(list[pv2.GetInt(i)]), plain(right.raw()[static_cast<size_t>(i)]));
    }
  }
}

TYPED_TEST(CompileTest, RunsOutOfMemoryWithoutALeak) {
  const Values<TypeParam> values(3000, 2, 1);
  long allowed = 0;
  const auto attempt = [&] {
    fail_allocation_after(allowed, false);
    const int code = code_of(
        [&] { compile_column(values.type(), values.size(), 3000, values.raw().data(), false); });
    fail_allocation_after(-1, false);
    return code;
  };
  while (const int code = attempt()) {
    ASSERT_EQ(code, QX_ERROR_OUT_OF_MEMORY);
    ++allowed;
  }
  EXPECT_GT(allowed, 3);
}

TEST(AccommodationTest, LeavesIdenticalListsAlone) {
  for (const auto accommodate : {AccommodationMain, MppAccommodationMain}) {
    const int same[] = {QX_NULL_INT, 3, 9};
    const auto one = Compile(3, QX_DT_INTEGER, 4, same);
    const auto list = [&] {
      Block<char> bytes = make_block<char>(sizeof same);
      memcpy(bytes.get(), same, sizeof same);
      return make_value_array(QX_DT_INTEGER, 3, std::move(bytes));
    };
    TIntArray pv1(2, true);
    TIntArray pv2(2, true);
    pv1.PutInt(1, 2);
    EXPECT_EQ(accommodate(pv1, *list(), pv2, *list()), nullptr);
    EXPECT_EQ(pv1.GetInt(1), 2);
  }
}

TEST(AccommodationTest, RefusesListsThatCannotBeMerged) {
  TIntArray pv(1, true);
  const TIntArray integers(1, true);
  const TDoubleArray doubles(1, true);
  const TIntArray empty(0, true);
  EXPECT_EQ(code_of([&] { AccommodationMain(pv, integers, pv, doubles); }), QX_ERROR_MERGE_TYPE);
  EXPECT_EQ(code_of([&] { MppAccommodationMain(pv, integers, pv, empty); }), QX_ERROR_PARAMETER);
  const TBaseArray bare;
  EXPECT_NE(code_of([&] { AccommodationMain(pv, bare, pv, bare); }), 0);
}

TEST(AccommodationTest, KeepsTheFirstListsTypeInfo) {
  TIntArray pv1(1, true);
  TIntArray pv2(1, true);
  TDoubleArray dates(1, true);
  dates.SetExtendType(QX_DT_DATE);
  TDoubleArray times(1, true);
  times.PutDouble(0, 0.5);
  const auto merged = AccommodationMain(pv1, dates, pv2, times);
  EXPECT_EQ(ArrayDataTypeEx(*merged), QX_DT_DATE);
  EXPECT_EQ(pv1.GetInt(0), 0);
  EXPECT_EQ(pv2.GetInt(0), 1);
}

struct AddressCase {
  const char* name;
  std::vector<int> data;
  bool addressed;
};

void PrintTo(const AddressCase& shown, std::ostream* out) {
  *out << shown.name;
}

class AddressTest : public testing::TestWithParam<AddressCase> {};

TEST_P(AddressTest, TakesTheTableForNarrowRanges) {
  const auto& [name, data, addressed] = GetParam();
  const int n = static_cast<int>(data.size());
  _RawIntArrayRangeInfo range;
  EXPECT_EQ(WillBeCompiledBySorting(QX_DT_INTEGER, n, data.data(), &range), addressed);
  EXPECT_FALSE(WillBeCompiledBySorting(QX_DT_DOUBLE, n, data.data(), &range));
  const auto column = Compile(n, QX_DT_INTEGER, 4, data.data(), &range);
  const std::set<int> wanted(data.begin(), data.end());
  const int* const list = reinterpret_cast<const int*>(column.value_list.get());
  EXPECT_EQ(std::vector<int>(list, list + column.unique),
            std::vector<int>(wanted.begin(), wanted.end()));
  for (int i = 0; i < n; ++i) {
    EXPECT_EQ(list[column.row_pointers[i]], data[static_cast<size_t>(i)]);
  }
}

constexpr int kMaxInt = std::numeric_limits<int>::max();
// One value allows a range below 1008: 1005 with the two slots more and NULL's.
INSTANTIATE_TEST_SUITE_P(
    Ranges, AddressTest,
    testing::Values(AddressCase{"OnlyNull", {QX_NULL_INT, QX_NULL_INT}, false},
                    AddressCase{"One", {5}, true}, AddressCase{"WidestOfTwo", {0, 1012}, true},
                    AddressCase{"TooWideForTwo", {0, 1013}, false},
                    AddressCase{"NullDoesNotCount", {QX_NULL_INT, 0, 1013}, false},
                    AddressCase{"WithNull", {7, QX_NULL_INT, -3, 7}, true},
                    AddressCase{"WholeRange", {-kMaxInt, kMaxInt, QX_NULL_INT}, false},
                    AddressCase{"LowEnd", {QX_NULL_INT + 1, QX_NULL_INT, QX_NULL_INT + 3}, true},
                    AddressCase{"HighEnd", {kMaxInt, kMaxInt - 70, kMaxInt - 1}, true}));

TEST(GetIntRangeTest, LeavesNullOut) {
  const int data[] = {QX_NULL_INT, 4, -9, QX_NULL_INT};
  const auto range = GetIntRange(4, data);
  EXPECT_EQ(range.nulls, 2);
  EXPECT_EQ(range.min, -9);
  EXPECT_EQ(range.max, 4);
  EXPECT_EQ(GetIntRange(0, data).min, kMaxInt);
  EXPECT_EQ(code_of([&] { GetIntRange(-1, data); }), QX_ERROR_NEGATIVE_ROWS);
}

TEST(CompileFailureTest, NamesTheFault) {
  const int data[] = {1};
  const auto compiled = [&](int n, int type, int width) {
    const int serial = code_of([&] { Compile(n, type, width, data); });
    EXPECT_EQ(code_of([&] { MppCompile(n, type, width, data); }), serial);
    return serial;
  };
  EXPECT_EQ(compiled(0, QX_DT_INTEGER, 4), QX_ERROR_NO_RECORD);
  EXPECT_EQ(compiled(1, QX_DT_INTEGER, 8), QX_ERROR_DATA_WIDTH);
  EXPECT_EQ(compiled(1, QX_DT_STRING, 4), QX_ERROR_DATA_WIDTH);
  EXPECT_EQ(compiled(1, 9, 4), QX_ERROR_TYPE_MISMATCH);
  EXPECT_EQ(compiled(1, 0, 4), QX_ERROR_TYPE_MISMATCH);
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

TEST(CompileTextTest, CutsTrailingBlanksInPlaceWhenAsked) {
  for (const auto compiled :
       {+[](const void* data) { return Compile(3, QX_DT_STRING, 8, data); },
        +[](const void* data) { return MppCompile(3, QX_DT_STRING, 8, data); }}) {
    char texts[3][8] = {"a  ", "a", "   "};
    const char* const data[] = {texts[0], texts[1], texts[2]};
    EXPECT_EQ(compiled(data).unique, 3);
    EXPECT_STREQ(texts[0], "a  ");
    TTableCollection::m_nCutLastSpace = 1;
    const auto column = compiled(data);
    TTableCollection::m_nCutLastSpace = 0;
    EXPECT_EQ(column.unique, 2);
    EXPECT_STREQ(texts[0], "a");
    EXPECT_STREQ(texts[2], "");
  }
}

TEST(DictionaryTest, StoresOnlyNewTextsAndNeedsNoTerminator) {
  using Dictionary = ValueDictionary<TStrArray>;
  Dictionary dictionary;
  std::vector<std::unique_ptr<std::string>> kept;
  const auto code = [&](std::string_view text) {
    return dictionary.code_of(Dictionary::tag_of(text), text, [&] {
      kept.push_back(std::make_unique<std::string>(text));
      return kept.back()->c_str();
    });
  };
  const std::string_view line = "ab,abc,ab,,abcdefghijklmnopqrstuvw";
  EXPECT_EQ(code(line.substr(0, 2)), 0);
  EXPECT_EQ(code(line.substr(3, 3)), 1);
  EXPECT_EQ(code(line.substr(7, 2)), 0);
  EXPECT_EQ(code(line.substr(10, 0)), 2);
  EXPECT_EQ(code(line.substr(11)), 3);
  EXPECT_EQ(dictionary.code_of("abc"), 1);
  EXPECT_EQ(dictionary.code_of("abcdefghijklmnopqrstuvw"), 3);
  EXPECT_EQ(kept.size(), 4u);
}

}  // namespace
}  // namespace qxe
