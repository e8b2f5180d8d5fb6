// Typed arrays: growth rules, limits, the string pool.
#include "storage/array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "storage/family.h"

namespace qxe {
namespace {

template <class Call>
int code_of(Call&& call) {
  try {
    call();
  } catch (const CQXException& failure) {
    return failure.ErrorCode();
  }
  return 0;
}

TEST(ArrayTest, GrowsByItsRules) {
  EXPECT_EQ(CalcMargin2(0), 10000);
  EXPECT_EQ(CalcMargin2(80000), 100000);
  EXPECT_EQ(code_of([] { CalcMargin(-1); }), QX_ERROR_NEGATIVE_SIZE);
  TIntArray array(0, true);
  for (int i = 0; i < 10001; ++i) array.AppendData(&i);
  EXPECT_EQ(array.FAllocSize, CalcMargin2(10000));
  EXPECT_EQ(array.GetInt(10000), 10000);
  array.AdjustMemArea();
  EXPECT_EQ(array.FAllocSize, 10001);
  array.SetAllocSize(0);
  EXPECT_EQ(array.FAllocSize, 1000);
  EXPECT_EQ(array.FArraySize, 1000);
}

TEST(ArrayTest, RefusesImpossibleSizesAndIndices) {
  TIntArray array(3, true);
  EXPECT_EQ(code_of([&] { array.SetArraySize(-1); }), QX_ERROR_ROW_SIZE);
  EXPECT_EQ(code_of([&] { array.SetAllocSize(-1); }), QX_ERROR_ROW_SIZE);
  EXPECT_EQ(code_of([&] { array.SetAllocSize(TBaseArray::kMaxBytes / 4 + 1); }),
            QX_ERROR_DATA_SIZE);
  EXPECT_EQ(code_of([] { TIntArray(-1, false); }), QX_ERROR_NEGATIVE_ROWS);
  for (const int index : {-1, 3}) {
    EXPECT_EQ(code_of([&] { array.GetInt(index); }), QX_ERROR_INDEX);
    EXPECT_EQ(code_of([&] { array.PutInt(index, 0); }), QX_ERROR_INDEX);
  }
  EXPECT_EQ(array.FArraySize, 3);
}

// A set that is taken for all rows in order is not read, so no way of writing may go unnoticed.
TEST(ArrayTest, NoticesEveryChangeOfItsCountedUpElements) {
  constexpr int kSize = 3000;
  const int other = 7;
  const int next = kSize + 1;
  const std::pair<bool, std::function<void(TIntArray&)>> edits[] = {
      {true, [](TIntArray&) {}},
      {false, [](TIntArray& array) { array.PIntAr()[kSize - 1] = 1; }},
      {false, [](TIntArray& array) { array.values()[0] = 2; }},
      {true, [](TIntArray& array) { array.PIntAr()[5] = 6; }},
      {false, [](TIntArray& array) { array.PutInt(kSize - 1, 1); }},
      {false, [&](TIntArray& array) { static_cast<TBaseArray&>(array).PutData(0, &other); }},
      {true, [&](TIntArray& array) { array.AppendData(&next); }},
      {false, [&](TIntArray& array) { array.AppendData(&other); }},
      {true, [](TIntArray& array) { array.SetArraySize(10); }},
      {true, [](TIntArray& array) { array.SetAllocSize(0); }},
      {false,
       [](TIntArray& array) {
         array.SetAllocSize(0);  // 1000 elements stay
         array.SetArraySize(kSize);
         std::fill_n(array.PIntAr() + 1000, kSize - 1000, 0);
       }},
      {false,
       [&](TIntArray& array) {
         array.SetAllocSize(0);
         array.AppendData(&other);
       }},
      {true, [](TIntArray& array) { array.Exclude0Rec(); }},
      {true, [](TIntArray& array) { array.PutInt(3, 0), array.InitAsSet(); }},
  };
  for (size_t i = 0; i < std::size(edits); ++i) {
    TIntArray array(kSize, true);
    EXPECT_FALSE(array.is_counted_up());
    array.InitAsSet();
    EXPECT_TRUE(array.is_counted_up());
    edits[i].second(array);
    EXPECT_EQ(array.is_counted_up(), edits[i].first) << "edit " << i;
  }
}

TEST(StringArrayTest, KeepsTextsThroughAppendOverwriteSweepAndCopy) {
  TStrArray texts(0, false);
  std::vector<std::string> wanted;
  for (int i = 0; i < 3000; ++i) {
    wanted.push_back(std::string(static_cast<size_t>(i % 50), 'a') + std::to_string(i));
    texts.AppendData(wanted.back().c_str());
  }
  for (int i = 0; i < 3000; i += 7) {
    wanted[static_cast<size_t>(i)] = "new" + std::to_string(i);
    texts.PutPChar(i, wanted[static_cast<size_t>(i)].c_str());
  }
  const auto check = [&](const TStrArray& array) {
    for (int i = 0; i < 3000; ++i) ASSERT_EQ(array.GetPChar(i), wanted[static_cast<size_t>(i)]);
  };
  check(texts);
  const auto copy = copy_of(texts);
  check(*copy);
  check(texts);
  long bytes = 0;
  for (const std::string& text : wanted) bytes += static_cast<long>(text.size()) + 1;
  EXPECT_EQ(texts.pool_used(), bytes) << "a copy sweeps the overwritten texts out";
  texts.AdjustMemArea();
  check(texts);
  EXPECT_TRUE(CompareStrArray(texts, *copy));
}

TEST(StringArrayTest, SweepGivesSharedOffsetsTextsOfTheirOwn) {
  TStrArray texts(3, true);  // three times offset 0
  texts.PutPChar(2, "b");
  texts.Sweep();
  EXPECT_STREQ(texts.GetPChar(0), texts.GetPChar(1));
  EXPECT_NE(texts.GetPChar(0), texts.GetPChar(1));
  EXPECT_STREQ(texts.GetPChar(2), "b");
}

TEST(StringArrayTest, LimitsSingleWritesAndReads) {
  TStrArray texts(0, false);
  texts.AppendData("kept");
  const std::string longest(4095, 'x');
  const std::string too_long(4096, 'x');
  EXPECT_EQ(code_of([&] { texts.PutPChar(0, too_long.c_str()); }), QX_ERROR_STRING_SIZE);
  EXPECT_STREQ(texts.GetPChar(0), "kept");
  texts.PutPChar(0, longest.c_str());
  EXPECT_EQ(texts.GetPChar(0), longest);
  texts.AppendData((too_long + too_long).c_str());
  std::string buffer(5000, '\0');
  EXPECT_EQ(texts.GetData(1, buffer.data()), 4095);
  EXPECT_EQ(strlen(buffer.data()), 4095u);
  texts.AppendData("xyz");
  EXPECT_STREQ(texts.GetPChar2(0), longest.c_str());
  EXPECT_STREQ(texts.GetPChar2(2), "yz");
}

}  // namespace
}  // namespace qxe
