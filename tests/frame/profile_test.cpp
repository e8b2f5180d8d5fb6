#include "frame/base/profile.h"

#include <gtest/gtest.h>

#include <string>

#include "support/engine_test.h"
#include "support/files.h"

namespace qxe::test {

namespace {

constexpr const char* kProfile =
    "OUTSIDE=0\n"
    "[SYSINFO]\r\n"
    "  RUNTHREADS =\t3 \r\n"
    "EMPTY=\n"
    "EQUATION=a=b\n"
    "no value here\n"
    "RUNTHREADS=4\n"
    "[ Spaced ]\n"
    "RUNTHREADS=5\n"
    "[broken\n"
    "LATE=6\n"
    "[SYSINFO]\n"
    "AGAIN=7";

using ProfileTest = EngineTest;

TEST_F(ProfileTest, GivesTheFirstValueOfTheExactKey) {
  struct {
    const char *section, *key;  // null: any section
    const char* value;          // "none" where the key is not there
  } const cases[] = {{"SYSINFO", "RUNTHREADS", "3"},
                     {"Spaced", "RUNTHREADS", "5"},
                     {"SYSINFO", "EMPTY", ""},
                     {"SYSINFO", "EQUATION", "a=b"},
                     {"SYSINFO", "AGAIN", "7"},
                     {"Spaced", "LATE", "6"},
                     {"SYSINFO", "RunThreads", "none"},
                     {"sysinfo", "RUNTHREADS", "none"},
                     {"SYSINFO", "LATE", "none"},
                     {"SYSINFO", "RUNTHREAD", "none"},
                     {nullptr, "RUNTHREADS", "3"},
                     {nullptr, "OUTSIDE", "0"},
                     {nullptr, "LATE", "6"},
                     {nullptr, "MISSING", ""}};
  write_file("some.ini", kProfile);
  for (const auto& [section, key, wanted] : cases) {
    char value[32] = "untouched";
    if (section == nullptr) {
      getProfileString("some.ini", key, value, sizeof value);
    } else {
      getPrivateProfileString(section, key, "none", value, sizeof value, "some.ini");
    }
    EXPECT_STREQ(value, wanted) << key;
  }
}

TEST_F(ProfileTest, MissingFileGivesTheDefault) {
  char value[8];
  getPrivateProfileString("SYSINFO", "RUNTHREADS", "9", value, sizeof value, "missing.ini");
  EXPECT_STREQ(value, "9");
  getProfileString("missing.ini", "RUNTHREADS", value, sizeof value);
  EXPECT_STREQ(value, "");
}

TEST_F(ProfileTest, LongValueIsCutToTheBuffer) {
  write_file("some.ini", "KEY=abcdefgh\n");
  char value[4];
  getProfileString("some.ini", "KEY", value, sizeof value);
  EXPECT_STREQ(value, "abc");
}

}  // namespace

}  // namespace qxe::test
