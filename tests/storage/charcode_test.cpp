#include "storage/charcode.h"

#include <gtest/gtest.h>
#include <string.h>

#include <random>
#include <string>
#include <vector>

#include "qxe.h"

namespace qxe {
namespace {

class CharCodeTest : public testing::Test {
 protected:
  void SetUp() override { buildSystemHeader(); }
  void TearDown() override { buildSystemHeader(); }
};

TEST_F(CharCodeTest, CodesLocalesAndTextsBelongTogether) {
  struct {
    int code, locale;
    const char* text;
  } const cases[] = {
      {17, 5, "Cp1252"}, {18, 1, "MS932"},  {19, 2, "MS949"}, {20, 0, "Shift_JIS"},
      {33, 3, "UTF8"},   {49, 4, "EUC_JP"}, {65, 6, "MS936"},
  };
  char text[32] = "";
  for (const auto& wanted : cases) {
    EXPECT_EQ(convertLocaleID2DBCharCode(wanted.locale), wanted.code);
    EXPECT_EQ(convertDBStringCode2DBCharCode(wanted.text), wanted.code);
    EXPECT_EQ(convertDBCharCode2DBStringCode(wanted.code, text), 0);
    EXPECT_STREQ(text, wanted.text);
  }
  EXPECT_EQ(convertDBStringCode2DBCharCode("UTF-8"), 33);
  EXPECT_EQ(convertDBStringCode2DBCharCode("EUC"), 49);
  for (const char* other : {"", "utf8", "UTF8 "}) {
    EXPECT_EQ(convertDBStringCode2DBCharCode(other), 0) << other;
  }
  EXPECT_EQ(convertLocaleID2DBCharCode(7), 0);
  EXPECT_EQ(convertDBCharCode2DBStringCode(99, text), -1);
  EXPECT_STREQ(text, "NotDefined");
}

TEST_F(CharCodeTest, TheCodeInForceIsPartOfTheSystemHeader) {
  const unsigned char start[] = {0xff, 0x36, 8, 8, 33, 0, 0};
  EXPECT_EQ(memcmp(QxeSysInfo, start, sizeof start), 0);

  char text[32] = "";
  EXPECT_EQ(getDBCharCode(text, false), 33);
  EXPECT_STREQ(text, "UTF8");
  EXPECT_EQ(getDBCharCode(text, true), 33);
  EXPECT_STREQ(text, "UTF-8");
  setDBCharCode(QX_CODE_EUC);
  EXPECT_EQ(getDBCharCode(text, true), 49);
  EXPECT_STREQ(text, "EUC_JP");
  EXPECT_EQ(QxeSysInfo[4], 49);
  EXPECT_EQ(getDBCharCode(nullptr, false), 49);
  EXPECT_EQ(getOSCharCode(text), 33);
  EXPECT_STREQ(text, "UTF8");
}

struct LengthCase {
  int code;
  unsigned char lead;
  int bytes;
};

TEST_F(CharCodeTest, LengthsChangeAtTheTableBounds) {
  const LengthCase cases[] = {
      {20, 0x80, 1}, {20, 0x81, 2}, {18, 0x9f, 2}, {18, 0xa0, 1}, {20, 0xdf, 1}, {20, 0xe0, 2},
      {20, 0xfc, 2}, {20, 0xfd, 1}, {19, 0x80, 1}, {19, 0x81, 2}, {19, 0xfe, 2}, {19, 0xff, 1},
      {49, 0x8d, 1}, {49, 0x8e, 2}, {49, 0x8f, 3}, {49, 0x90, 1}, {49, 0xa0, 1}, {49, 0xa1, 2},
      {49, 0xfe, 2}, {49, 0xff, 1}, {33, 0x7f, 1}, {33, 0x80, 1}, {33, 0xbf, 1}, {33, 0xc0, 2},
      {33, 0xdf, 2}, {33, 0xe0, 3}, {33, 0xef, 3}, {33, 0xf0, 4}, {33, 0xf7, 4}, {33, 0xf8, 5},
      {33, 0xfb, 5}, {33, 0xfc, 6}, {33, 0xfd, 6}, {33, 0xfe, 1}, {17, 0x81, 1}, {65, 0x81, 1},
      {0, 0xe0, 1},
  };
  for (const LengthCase& wanted : cases) {
    EXPECT_EQ(countMultiBytes(wanted.code, wanted.lead), wanted.bytes)
        << "code " << wanted.code << " byte " << static_cast<int>(wanted.lead);
  }
}

/// A text of whole characters, and which of its bytes begin one.
struct MarkedText {
  std::string bytes;
  std::vector<bool> begins;
};

MarkedText marked_text(std::mt19937& random, const std::vector<std::string>& characters, int most) {
  MarkedText text;
  for (int i = static_cast<int>(random() % static_cast<unsigned>(most + 1)); i > 0; --i) {
    const std::string& character = characters[random() % characters.size()];
    text.bytes += character;
    text.begins.push_back(true);
    text.begins.insert(text.begins.end(), character.size() - 1, false);
  }
  return text;
}

struct AlphabetCase {
  int code;
  std::vector<std::string> characters;  // of one and two bytes, with bytes shared between them
};

const AlphabetCase kAlphabets[] = {
    {QX_CODE_SJIS, {"a", "\\", "\x95\x5c", "\x83\x61", "\x95\x95", "\x83\x95", "\xb1", "\x95\xb1"}},
    {QX_CODE_MS932, {"a", "A", "\xe0\x41", "\xe0\xe0", "\x81\xe0", "\xdf"}},
    {QX_CODE_MS949, {"a", "\xb0\xa1", "\xa1\xb0", "\xb0\xb0", "\x81\x61"}},
    {QX_CODE_EUC, {"a", "\xa4\xa2", "\xa2\xa4", "\xa4\xa4", "\x8e\xb1"}},
    {QX_CODE_UTF8, {"a", "\xc3\xa9", "\xc3\xa4", "\xd0\xa9"}},
    {QX_CODE_CP1252, {"a", "\xe9", "\x95", "\x83"}},
    {QX_CODE_MS936, {"a", "\x81", "\xb0"}},
};

TEST_F(CharCodeTest, SearchFindsWholeCharactersOnly) {
  std::mt19937 random(43);
  for (const AlphabetCase& alphabet : kAlphabets) {
    setDBCharCode(alphabet.code);
    for (int i = 0; i < 2000; ++i) {
      const MarkedText text = marked_text(random, alphabet.characters, 8);
      const char* const start = text.bytes.c_str();
      for (size_t at = 0; at < text.bytes.size(); ++at) {
        ASSERT_EQ(ismbsptr_locale(start, start + at), text.begins[at])
            << "code " << alphabet.code << " byte " << at << " of " << text.bytes;
      }
      const std::string pattern = marked_text(random, alphabet.characters, 2).bytes;
      size_t wanted = text.bytes.find(pattern);
      while (wanted < text.begins.size() && !text.begins[wanted] && !pattern.empty()) {
        wanted = text.bytes.find(pattern, wanted + 1);
      }
      ASSERT_EQ(qxembsstr(start, pattern.c_str()),
                wanted == std::string::npos ? nullptr : start + wanted)
          << "code " << alphabet.code << ", " << pattern << " in " << text.bytes;
    }
  }
}

}  // namespace
}  // namespace qxe
