// The engine itself: version, environment, settings, conversions, clearing and restarting.
#include <stdlib.h>
#include <string.h>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

class EngineCallsTest : public EngineTest {
 protected:
  static std::string char_code() {
    _TREnvironment environment;
    EXPECT_EQ(RQXGetEnvironment(&environment), 0);
    return environment.dbCharCode;
  }
};

TEST_F(EngineCallsTest, TellsItsVersionInEveryForm) {
  int numbers[4] = {};
  char copyright[512] = "";
  EXPECT_EQ(RQXGetVersion(numbers, copyright), 0);
  EXPECT_EQ(std::vector<int>(numbers, numbers + 4), (std::vector<int>{16782850, 25, 1, 20170503}));
  EXPECT_EQ(std::string(copyright).rfind("Copyright (c)", 0), 0U);
  EXPECT_STREQ(RQXGetCopyRightR1(), copyright);

  int* live = nullptr;
  char* text = nullptr;
  EXPECT_EQ(QXGetVersion(&live, &text), 0);
  EXPECT_EQ(memcmp(live, numbers, sizeof numbers), 0);
  EXPECT_STREQ(text, copyright);
  int again[4] = {};
  EXPECT_EQ(RQXGetVersionR1(again), 0);
  EXPECT_EQ(memcmp(again, numbers, sizeof numbers), 0);
}

TEST_F(EngineCallsTest, DescribesItsEnvironment) {
  _TREnvironment environment;
  memset(&environment, 0x55, sizeof environment);
  EXPECT_EQ(RQXGetEnvironment(&environment), 0);
  EXPECT_EQ(environment.osType, 53);
  EXPECT_GE(environment.osMajor, 2);
  EXPECT_EQ(environment.hardwareKind, 6);
  EXPECT_GE(environment.processorCount, 1);
  EXPECT_EQ(environment.hardwareMinor, -1);
  EXPECT_EQ(environment.wordSize, 64);
  EXPECT_EQ(std::string(environment.reserved, 32), std::string(32, '\0'));
  EXPECT_STREQ(environment.osCharCode, "UTF8");
  EXPECT_STREQ(environment.dbCharCode, "UTF8");

  unsigned long total = 0;
  unsigned long available = 0;
  EXPECT_EQ(RQXGetSystemMemInfo(&total, &available), 0);
  EXPECT_GT(available, 0UL);
  EXPECT_GT(total, available);
}

TEST_F(EngineCallsTest, SetsTheCharacterCodeByLocaleAndByText) {
  EXPECT_EQ(RQXSetKanjiCode(QX_LOCALE_SJIS), 0);
  EXPECT_EQ(char_code(), "Shift_JIS");
  expect_failure(RQXSetKanjiCode(7), QX_ERROR_CHAR_CODE, "Invalid Parameter");
  char unknown[] = "NotDefined";
  expect_failure(RQXSetDBCharCode(unknown), QX_ERROR_CHAR_CODE, "Invalid Parameter");
  EXPECT_EQ(char_code(), "Shift_JIS");
  char hyphenated[] = "UTF-8";
  EXPECT_EQ(RQXSetDBCharCode(hyphenated), 0);
  EXPECT_EQ(char_code(), "UTF8");
}

TEST_F(EngineCallsTest, CutsTrailingBlanksOnlyWhenAskedTo) {
  const Columns columns = {{"text", strings({"a  ", "b"})}};
  EXPECT_EQ(TestTable(columns).text("text", 1), "a  ");
  EXPECT_EQ(RQXSetTailSpaceFlag(1), 0);
  EXPECT_EQ(TestTable(columns).text("text", 1), "a");
}

TEST_F(EngineCallsTest, ReadsNumbersAndTimesStrictly) {
  int number = 0;
  EXPECT_EQ(QXStrToInt("-12", &number), 0);
  EXPECT_EQ(number, -12);
  expect_failure(QXStrToInt("12x", &number), QX_ERROR_PARAMETER, "NOT A NUMBER: 12x");
  EXPECT_EQ(number, kNullInt);
  EXPECT_EQ(QXStrToInt("", &number), 0);
  EXPECT_EQ(number, kNullInt);

  double real = 0;
  EXPECT_EQ(QXStrToFloat("1.5", &real), 0);
  EXPECT_EQ(real, 1.5);
  expect_failure(QXStrToFloat("1.5kg", &real), QX_ERROR_PARAMETER, "NOT A NUMBER: 1.5kg");
  EXPECT_EQ(real, kNullDouble);

  EXPECT_EQ(RQXStrToTime("12:00:00", &real), 0);
  EXPECT_EQ(real, 0.5);
  expect_failure(QXStrToTime("noon", &real), QX_ERROR_PARAMETER);
  EXPECT_EQ(real, kNullDouble);
}

TEST_F(EngineCallsTest, KeepsTheFormOfServicesItDoesNotHave) {
  char address[8] = "before";
  EXPECT_EQ(RQXGetServerIPAddress(address), 0);
  EXPECT_STREQ(address, "");
  char untouched[8] = "before";
  EXPECT_EQ(RQXGetNamingServiceIdentity(untouched), 0);
  EXPECT_STREQ(untouched, "before");
  EXPECT_EQ(RQXConnect2ZVKServer("host"), 0);
  EXPECT_EQ(RQXDisconnectFromZVKServer(), 0);
  EXPECT_EQ(RQXSetJoinCheckFlag(1), 0);
  EXPECT_EQ(RQXShutdown(), 0);
}

TEST_F(EngineCallsTest, ClearingForgetsTablesAndIdsButNoSetting) {
  RQXAddRealTable("t", 1);
  RQXSetKanjiCode(QX_LOCALE_EUC);
  EXPECT_EQ(RQXClearDB(), 0);
  EXPECT_EQ(RQXGetNTable(), 0);
  EXPECT_EQ(RQXAddRealTable("again", 1), 1);
  EXPECT_EQ(char_code(), "EUC_JP");
}

TEST_F(EngineCallsTest, RestartsWithoutTablesAndWithRunningWorkers) {
  RQXAddRealTable("t", 1);
  RQXSetKanjiCode(QX_LOCALE_EUC);
  RQXSetSavedFlag(0, 1, 0);
  EXPECT_EQ(RQXReInitializeMS(), 0);
  EXPECT_EQ(RQXGetNTable(), 0);
  EXPECT_EQ(char_code(), "UTF8");
  int flags[3] = {7, 7, 7};
  EXPECT_EQ(RQXGetSavedFlag(&flags[0], &flags[1], &flags[2]), 0);
  EXPECT_EQ(std::vector<int>(flags, flags + 3), (std::vector<int>{0, 1, 0}));

  const TestTable table({{"a", ints({3, 1, 2})}});
  EXPECT_EQ(table.id(), 1);
  EXPECT_EQ(table.rows(table.sort("a")), (std::vector<int>{2, 3, 1}));
}

}  // namespace
}  // namespace qxe::test
