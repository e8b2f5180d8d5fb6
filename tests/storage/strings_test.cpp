#include "storage/strings.h"

#include <errno.h>
#include <gtest/gtest.h>
#include <math.h>
#include <stdlib.h>
#include <string.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "storage/charcode.h"
#include "tables/table_collection.h"

namespace qxe {
namespace {

const double kNull = -std::numeric_limits<double>::infinity();

/// Sets the database code for the length of a test.
class CodeInForce {
 public:
  explicit CodeInForce(int code) : before_(getSystemInfoDBCharCode()) {
    setSystemInfoDBCharCode(code);
  }
  ~CodeInForce() { setSystemInfoDBCharCode(before_); }
  CodeInForce(const CodeInForce&) = delete;
  CodeInForce& operator=(const CodeInForce&) = delete;

 private:
  int before_;
};

template <class Random>
std::string random_text(Random& random, const std::vector<std::string>& pieces, int most) {
  std::string text;
  for (int i = static_cast<int>(random() % static_cast<unsigned>(most + 1)); i > 0; --i) {
    text += pieces[random() % pieces.size()];
  }
  return text;
}

bool only_blanks(const char* text) {
  return text[strspn(text, " ")] == '\0';
}

/// Without `strict` what the system makes of a text, but NULL for one that is empty or too large;
/// with it, NULL and a fault for what is not a number from end to end.
void expect_as_strtol(const std::string& text) {
  SCOPED_TRACE('"' + text + '"');
  char* end = nullptr;
  const long value = strtol(text.c_str(), &end, 10);
  const bool fits = value > INT_MIN && value <= INT_MAX;
  const int lax = text.empty() || !fits ? QX_NULL_INT : static_cast<int>(value);
  const bool fault =
      !text.empty() && (!fits || end == text.c_str() || text[0] == '\t' || !only_blanks(end));
  bool bad = false;
  ASSERT_EQ(Str2Int(text, false, &bad), lax);
  ASSERT_FALSE(bad);
  ASSERT_EQ(Str2Int(text, true, &bad), fault ? QX_NULL_INT : lax);
  ASSERT_EQ(bad, fault);
  ASSERT_EQ(Str2Int(text, true, nullptr), fault ? QX_NULL_INT : lax);
}

TEST(Str2IntTest, AgreesWithTheSystem) {
  for (const char* const text :
       {"2147483647", "2147483648", "-2147483647", "-2147483648", "4294967297",
        "0000000000000000000000012", "99999999999999999999999999", "-99999999999999999999999999"}) {
    expect_as_strtol(text);
  }
  std::mt19937 random(4711);
  const std::vector<std::string> pieces = {" ", "-", "+",        "0", "1",
                                           "7", "9", "21474836", "x", "\t"};
  for (int i = 0; i < 50000 && !testing::Test::HasFatalFailure(); ++i) {
    expect_as_strtol(random_text(random, pieces, 7));
  }
}

void expect_as_strtod(const std::string& text) {
  SCOPED_TRACE('"' + text + '"');
  char* end = nullptr;
  const double value = strtod(text.c_str(), &end);
  const double lax = text.empty() || std::isnan(value) ? kNull : value;
  const bool fault = !text.empty() && (!std::isfinite(value) || end == text.c_str() ||
                                       text[0] == '\t' || !only_blanks(end));
  bool bad = false;
  ASSERT_EQ(Str2Double(text, false, &bad), lax);
  ASSERT_FALSE(bad);
  ASSERT_EQ(Str2Double(text, true, &bad), fault ? kNull : lax);
  ASSERT_EQ(bad, fault);
}

TEST(Str2DoubleTest, AgreesWithTheSystem) {
  for (const char* const text :
       {"1e309", "-1e309", "1e-400", "4.9e-324", "1.7976931348623157e308", "0x1A", "0x",
        "-Infinity", "nan", "123456789012345.67", "0.1234567890123456789"}) {
    expect_as_strtod(text);
  }
  std::mt19937_64 random(1234);
  const std::vector<std::string> any = {
      " ", "-",  "+",  "0",   "1",     "7",   "9",   ".",    "e", "E",  "x",  "0x", "a",
      "p", "\t", "\n", "inf", "INITY", "NaN", "(1)", "e-32", ",", "e3", "55", "00", "12345"};
  const std::vector<std::string> numbers = {"0", "1", "2", "3", "9", "12", "345", "."};
  char text[40];
  for (int i = 0; i < 50000 && !testing::Test::HasFatalFailure(); ++i) {
    expect_as_strtod(random_text(random, any, 6));
    expect_as_strtod(random_text(random, numbers, 12));
    snprintf(text, sizeof text, "%.*g", static_cast<int>(random() % 18 + 1),
             std::bit_cast<double>(random()));
    expect_as_strtod(text);
  }
}

TEST(NumberTextTest, ReadsNothingBehindTheViewsEnd) {
  const std::string_view digits = "1234567890";
  const std::string_view hexadecimal = "0x1A";
  EXPECT_EQ(Str2Int(digits.substr(0, 2), true, nullptr), 12);
  EXPECT_EQ(Str2Double(digits.substr(0, 2), true, nullptr), 12.0);
  EXPECT_EQ(Str2Double(hexadecimal.substr(0, 3), true, nullptr), 1.0);
  EXPECT_EQ(Str2Double(std::string_view("1e309").substr(0, 4), true, nullptr), 1e30);
}

TEST(StripSpaceTest, DropsCommasAndLeadingBlanks) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},  {"12", "12"}, {"  12 ", "12 "}, {" , ,12", "12"}, {"1,234,567", "1234567"},
      {",", ""}, {"   ", ""},  {"12,", "12"},    {"\t1", "\t1"},   {", 1, 2", "1 2"},
  };
  for (const auto& [text, wanted] : cases) {
    char room[32];
    EXPECT_EQ(stripSpace(text, room), wanted) << text;
    char own[32];
    qxe_strlcpy(own, text, sizeof own);
    EXPECT_EQ(stripSpace(own, own), wanted) << text << " in its own memory";
  }
}

TEST(QxeStrlcpyTest, CutsAndTerminates) {
  char text[8] = "xxxxxxx";
  EXPECT_EQ(qxe_strlcpy(text, "abc", sizeof text), 3U);
  EXPECT_STREQ(text, "abc");
  EXPECT_EQ(qxe_strlcpy(text, "0123456789", sizeof text), 10U);
  EXPECT_STREQ(text, "0123456");
  EXPECT_EQ(qxe_strlcpy(text, "abc", 1), 3U);
  EXPECT_STREQ(text, "");
  text[0] = 'x';
  EXPECT_EQ(qxe_strlcpy(text, "abc", 0), 3U);
  EXPECT_EQ(text[0], 'x');
}

struct NameCase {
  int code;
  const char* name;
  const char* wanted;
};

TEST(ToFileNameTest, ReplacesPunctuationOutsideMultiByteCharacters) {
  const NameCase cases[] = {
      {QX_CODE_UTF8, "a.b c", "a_b_c"},
      {QX_CODE_UTF8, " !%&()*+-./:;?[\\]", "_________________"},
      {QX_CODE_UTF8, "#$',<=>@\"^{}|~`_09azAZ", "#$',<=>@\"^{}|~`_09azAZ"},
      {QX_CODE_SJIS, "\x95\x5c.", "\x95\x5c_"},
      {QX_CODE_CP1252, "\x95\x5c.", "\x95__"},
      {QX_CODE_UTF8, "\xe3\x81\x82.\xe3\x81", "\xe3\x81\x82_\xe3\x81"},
  };
  for (const NameCase& wanted : cases) {
    const CodeInForce code(wanted.code);
    char name[64];
    qxe_strlcpy(name, wanted.name, sizeof name);
    EXPECT_TRUE(ToFileName(name));
    EXPECT_STREQ(name, wanted.wanted);
  }
}

TEST(ToFileNameTest, TakesNamesOf1To255Bytes) {
  std::string name;
  EXPECT_FALSE(ToFileName(name.data()));
  name.assign(255, '.');
  EXPECT_TRUE(ToFileName(name.data()));
  EXPECT_EQ(name, std::string(255, '_'));
  name.assign(256, '.');
  EXPECT_FALSE(ToFileName(name.data()));
  EXPECT_EQ(name, std::string(256, '.'));
}

TEST(VerifySeedNameTest, CutsAGeneratedSuffix) {
  const NameCase cases[] = {
      {QX_CODE_UTF8, "sales", "sales"},
      {QX_CODE_UTF8, "sales_#3", "sales"},
      {QX_CODE_UTF8, "a b_#1_#2", "a_b"},
      {QX_CODE_UTF8, "a_#", "a"},
      {QX_CODE_UTF8, "a.#7", "a"},
      {QX_CODE_UTF8, "_#5", "_#5"},
      {QX_CODE_UTF8, "_#_#5", "_#"},
      {QX_CODE_UTF8, "a_", "a_"},
      {QX_CODE_SJIS, "\x83\x5f#1", "\x83\x5f#1"},
  };
  for (const NameCase& wanted : cases) {
    const CodeInForce code(wanted.code);
    char out[256];
    EXPECT_TRUE(verifySeedName(wanted.name, out));
    EXPECT_STREQ(out, wanted.wanted);
  }
}

TEST(VerifySeedNameTest, RefusesBadSeedsAndLeavesTheSuffixOnDemand) {
  char out[256];
  EXPECT_FALSE(verifySeedName("", out));
  EXPECT_FALSE(verifySeedName(std::string(256, 'a').c_str(), out));
  EXPECT_TRUE(verifySeedName(std::string(255, 'a').c_str(), out));

  TTableCollection::m_nDisableTrimUntilSharp = true;
  EXPECT_TRUE(verifySeedName("sales_#3", out));
  TTableCollection::m_nDisableTrimUntilSharp = false;
  EXPECT_STREQ(out, "sales_#3");
}

struct CutCase {
  std::string text;
  size_t length;
};

TEST(DelLastSpcTest, CutsWithinTheFirst4096Bytes) {
  const std::string letters(5000, 'x');
  const CutCase cases[] = {
      {"", 0},
      {"abc", 3},
      {"abc  ", 3},
      {"   ", 0},
      {"a b ", 3},
      {"abc\t", 4},
      {std::string(4095, 'x') + " ", 4095},
      {std::string(4096, 'x') + "  ", 4098},
      {std::string(4090, 'x') + std::string(20, ' '), 4090},
      {std::string(4090, 'x') + std::string(6, ' ') + "tail", 4090},
      {std::string(4090, 'x') + std::string(5, ' ') + "tail", 4099},
      {letters, 5000},
  };
  for (const CutCase& wanted : cases) {
    std::string text = wanted.text;
    EXPECT_EQ(DelLastSpc(text.data()), wanted.length != wanted.text.size());
    EXPECT_EQ(strlen(text.c_str()), wanted.length);
  }
}

TEST(CutWhiteSpaceTest, CutsBothEnds) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""}, {" \t\r\n", ""}, {"a", "a"}, {" \ta b\r\n", "a b"}, {"a ", "a"}, {" a", "a"}};
  for (const auto& [text, wanted] : cases) {
    char own[16];
    qxe_strlcpy(own, text, sizeof own);
    CutWhiteSpace(own);
    EXPECT_STREQ(own, wanted);
  }
}

TEST(UpperCaseTest, SkipsMultiByteCharacters) {
  char sjis[] = "a\x83\x61z{`";  // the second byte of the character is an "a"
  UpperCase(QX_CODE_SJIS, sjis);
  EXPECT_STREQ(sjis, "A\x83\x61Z{`");
  UpperCase(QX_CODE_CP1252, sjis);
  EXPECT_STREQ(sjis, "A\x83\x41Z{`");

  const CodeInForce code(QX_CODE_UTF8);
  char utf8[] = "\xc3\xa9t\xc3\xa9";
  AnsiUpperCase(utf8);
  EXPECT_STREQ(utf8, "\xc3\xa9T\xc3\xa9");
}

}  // namespace
}  // namespace qxe
