// Random files against a naive reading of the same rows.
#include <algorithm>
#include <random>

#include "import/import_fixture.h"

namespace qxe::test {

namespace {

class RandomFile {
 public:
  explicit RandomFile(unsigned seed) : generator_(seed) {}

  int below(int limit) { return static_cast<int>(generator_() % static_cast<unsigned>(limit)); }

  /// A text of letters and of everything that means something to a parser.
  std::string text() {
    static const std::string kCharacters = "abc,,\"\"\r;\t '";
    std::string text;
    const int size = below(10) == 0 ? below(300) : below(14);
    for (int i = 0; i < size; ++i) {
      text += kCharacters[static_cast<size_t>(below(static_cast<int>(kCharacters.size())))];
    }
    return text;
  }

  /// A text as a cell of a comma separated file, in quotes where it must or may be.
  std::string cell(const std::string& text) {
    const bool must =
        text.find_first_of(",\r") != std::string::npos || (!text.empty() && text[0] == '"');
    if (!must && below(3) != 0) return text;
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + "\"";
  }

  std::string line_end() { return below(4) == 0 ? "\r\n" : "\n"; }

 private:
  std::mt19937 generator_;
};

class ImportRandomTest : public ImportTest, public testing::WithParamInterface<int> {};

TEST_P(ImportRandomTest, CellsComeBackAsWritten) {
  RandomFile random(static_cast<unsigned>(GetParam()));
  const int columns = 1 + random.below(6);
  const int count = random.below(4) * 700 + random.below(5);
  std::string catalog = "//CSV\n";
  for (int i = 0; i < columns; ++i) catalog += "A\t9\tc" + std::to_string(i) + "\n";
  Rows rows;
  std::string data;
  for (int row = 0; row < count; ++row) {
    rows.emplace_back();
    for (int i = 0; i < columns; ++i) {
      rows.back().push_back(random.text());
      data += (i == 0 ? "" : ",") + random.cell(rows.back().back());
    }
    // The last line needs no end, unless it would be no line.
    if (row + 1 < count || random.below(2) == 0 || data.back() == '\n') data += random.line_end();
  }
  const int id = import(catalog, data);
  ASSERT_GT(id, 0) << hex(id);
  EXPECT_EQ(rows_of(id), rows);
  EXPECT_FALSE(has_log());
}

TEST_P(ImportRandomTest, EachLineIsStoredOrRefused) {
  RandomFile random(static_cast<unsigned>(GetParam()) + 1000);
  Rows kept;
  std::vector<int> refused;
  std::string data;
  const int count = 1000 + random.below(2000);
  for (int line = 1; line <= count; ++line) {
    const std::string number = std::to_string(random.below(100000) - 5000);
    const std::string text = random.text();
    const std::string good = number + "," + random.cell(text);
    switch (random.below(20)) {
      case 0: data += "x" + good; break;          // no number
      case 1: data += good + ","; break;          // one field too many
      case 2: data += number; break;              // one too few
      case 3: data += number + ",\"open"; break;  // a quote that is not closed
      case 4: data += number + ",\"a\" "; break;  // text behind the closing quote
      case 5: break;                              // an empty line
      default:
        data += good + random.line_end();
        kept.push_back({number, text});
        continue;
    }
    refused.push_back(line);
    data += random.line_end();
  }
  const int id = import("//CSV\n//ERROR\tSKIPLINE\nI\t9\ta\nA\t9\tb\n", data);
  ASSERT_GT(id, 0) << hex(id);
  EXPECT_EQ(rows_of(id), kept);
  EXPECT_EQ(logged_rows(), refused);
}

INSTANTIATE_TEST_SUITE_P(Seeds, ImportRandomTest, testing::Range(1, 13));

}  // namespace

}  // namespace qxe::test
