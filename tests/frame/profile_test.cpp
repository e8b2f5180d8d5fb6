#include "frame/base/profile.h"

#include <gtest/gtest.h>

#include <string>

#include "support/case_name.h"
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

struct ProfileCase {
  const char* name;
  const char* section;  // null: any section
  const char* key;
  const char* value;  // "none" where the key is not there
};

class ProfileTest : public EngineTest, public testing::WithParamInterface<ProfileCase> {};

TEST_P(ProfileTest, GivesTheFirstValueOfTheExactKey) {
  write_file("some.ini", kProfile);
  const ProfileCase& wanted = GetParam();
  char value[32] = "untouched";
  if (wanted.section == nullptr) {
    getProfileString("some.ini", wanted.key, value, sizeof value);
  } else {
    getPrivateProfileString(wanted.section, wanted.key, "none", value, sizeof value, "some.ini");
  }
  EXPECT_STREQ(value, wanted.value);
}

INSTANTIATE_TEST_SUITE_P(
    Lookups, ProfileTest,
    testing::Values(ProfileCase{"TrimmedFirstOfTwo", "SYSINFO", "RUNTHREADS", "3"},
                    ProfileCase{"SectionNameTrimmed", "Spaced", "RUNTHREADS", "5"},
                    ProfileCase{"EmptyValueIsAValue", "SYSINFO", "EMPTY", ""},
                    ProfileCase{"ValueMayHoldEquals", "SYSINFO", "EQUATION", "a=b"},
                    ProfileCase{"SectionGoesOnLater", "SYSINFO", "AGAIN", "7"},
                    ProfileCase{"BrokenSectionIsNone", "Spaced", "LATE", "6"},
                    ProfileCase{"KeyCaseCounts", "SYSINFO", "RunThreads", "none"},
                    ProfileCase{"SectionCaseCounts", "sysinfo", "RUNTHREADS", "none"},
                    ProfileCase{"KeyOfAnotherSection", "SYSINFO", "LATE", "none"},
                    ProfileCase{"NoPartOfAKey", "SYSINFO", "RUNTHREAD", "none"},
                    ProfileCase{"AnySectionFirst", nullptr, "RUNTHREADS", "3"},
                    ProfileCase{"AnySectionOutside", nullptr, "OUTSIDE", "0"},
                    ProfileCase{"AnySectionLater", nullptr, "LATE", "6"},
                    ProfileCase{"AnySectionMissing", nullptr, "MISSING", ""}),
    case_name<ProfileCase>);

using ProfileFileTest = EngineTest;

TEST_F(ProfileFileTest, MissingFileGivesTheDefault) {
  char value[8];
  getPrivateProfileString("SYSINFO", "RUNTHREADS", "9", value, sizeof value, "missing.ini");
  EXPECT_STREQ(value, "9");
  getProfileString("missing.ini", "RUNTHREADS", value, sizeof value);
  EXPECT_STREQ(value, "");
}

TEST_F(ProfileFileTest, LongValueIsCutToTheBuffer) {
  write_file("some.ini", "KEY=abcdefgh\n");
  char value[4];
  getProfileString("some.ini", "KEY", value, sizeof value);
  EXPECT_STREQ(value, "abc");
}

}  // namespace

}  // namespace qxe::test
