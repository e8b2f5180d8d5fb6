// Column compilation for clients.
#include <string>

#include "support/engine_test.h"
#include "support/raw_values.h"

namespace qxe::test {
namespace {

class CompileCallsTest : public EngineTest {
 protected:
  template <class Value>
  static std::vector<Value> taken(Value* values, int count) {
    std::vector<Value> result(values, values + count);
    void* memory = values;
    EXPECT_EQ(QXFreeMem(&memory), 0);
    EXPECT_EQ(memory, nullptr);
    return result;
  }
};

TEST_F(CompileCallsTest, GiveNumbersAndSortedDistinctValues) {
  int integers[] = {30, 10, 30, kNullInt, 20};
  int* numbers = nullptr;
  int* list = nullptr;
  EXPECT_EQ(iCompileInt(5, 2, integers, &numbers, &list), 4);
  EXPECT_EQ(taken(numbers, 5), (std::vector<int>{3, 1, 3, 0, 2}));
  EXPECT_EQ(taken(list, 4), (std::vector<int>{kNullInt, 10, 20, 30}));

  double doubles[] = {1.5, -1, 1.5};
  double* reals = nullptr;
  EXPECT_EQ(iCompileFloat(3, 1024, doubles, &numbers, &reals), 2);
  EXPECT_EQ(taken(numbers, 3), (std::vector<int>{1, 0, 1}));
  EXPECT_EQ(taken(reals, 2), (std::vector<double>{-1, 1.5}));
}

TEST_F(CompileCallsTest, PointAtTheTextsOfTheInput) {
  char b[] = "b";
  char a[] = "a";
  char* texts[] = {b, a, b};
  int* numbers = nullptr;
  long* list = nullptr;
  EXPECT_EQ(iCompileString(3, 2, texts, &numbers, &list), 2);
  EXPECT_EQ(taken(numbers, 3), (std::vector<int>{1, 0, 1}));
  const std::vector<long> values = taken(list, 2);
  EXPECT_EQ(reinterpret_cast<char*>(values[0]), a);
  EXPECT_STREQ(reinterpret_cast<char*>(values[1]), "b");
}

TEST_F(CompileCallsTest, OrderDecimals) {
  RawValues values(QX_DT_DECIMAL, {decimal(2, "1.25"), decimal(2, "-1.25")});
  int* numbers = nullptr;
  Numeric* list = nullptr;
  EXPECT_EQ(iCompileNumeric(2, 2, static_cast<Numeric*>(values.data()), &numbers, &list), 2);
  EXPECT_EQ(taken(numbers, 2), (std::vector<int>{1, 0}));
  EXPECT_EQ(taken(list, 2)[0].hi, -1);
}

TEST_F(CompileCallsTest, RefuseBadSizesWithoutWriting) {
  int value = 1;
  int* numbers = &value;
  int* list = &value;
  EXPECT_EQ(iCompileInt(0, 1, &value, &numbers, &list), -1);
  EXPECT_EQ(iCompileInt(1, 1, &value, &numbers, &list), -2);
  EXPECT_EQ(iCompileInt(1, 1025, &value, &numbers, &list), -2);
  EXPECT_EQ(numbers, &value);
  EXPECT_EQ(list, &value);
}

}  // namespace
}  // namespace qxe::test
