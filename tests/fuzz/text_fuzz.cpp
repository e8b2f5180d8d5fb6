// Any bytes as data. The first line of the input chooses the catalog and the division of the work,
// one byte for each choice; corpus/text_fuzz shows it. The bytes in front of a choice below stand
// for it, so that seeds can be read; any other byte stands for one of them too.
#include <string>
#include <string_view>

#include "fuzz/fuzz_input.h"
#include "fuzz/import_check.h"
#include "qxe.h"

namespace {

using qxe::test::ImportInput;
using qxe::test::Refused;

struct Choice {
  char byte;
  const char* text;
};

constexpr Choice kFileTypes[] = {{'C', "//CSV\n"},
                                 {'T', "//TAB\n"},
                                 {'F', "//FIX\n"},
                                 {'U', "//USR\t;\n"},
                                 {'V', "//USR\t\\t\tx\t1\n"},
                                 {'W', "//USR\t;\t|\t:\t#\t!\n"},
                                 {'Q', "//USR\t\"\t,\n"},
                                 {'H', "//USR\t\xe3\t\xff\n"}};

constexpr Choice kErrorModes[] = {{'S', "//ERROR\tSTOP\n"},
                                  {'C', "//ERROR\tCONTINUE\n"},
                                  {'N', "//ERROR\tNONE\n"},
                                  {'K', "//ERROR\tSKIPLINE\n"}};

constexpr Choice kTitles[] = {{'-', ""}, {'t', "//CUTTOP\n"}};

// Letters are types, capitals their plain form; digits further forms.
constexpr Choice kColumns[] = {{'I', "I\t4\tc\n"},
                               {'F', "F\t5\tc\n"},
                               {'D', "D\t10\tc\n"},
                               {'T', "T\t8\tc\n"},
                               {'A', "A\t3\tc\n"},
                               {'E', "E\t19\tc\n"},
                               {'N', "N\t6\tc\n"},
                               {'i', "I\t1\tc\n"},
                               {'a', "A\t1\tc\n"},
                               {'f', "F\t1\tc\n"},
                               {'x', "A\t2\tc\tSKIP\n"},
                               {'n', "N\t5\tc\t2\tROUNDHALFEVEN\n"},
                               {'0', "N\t5\tc\t0\tROUNDUP\n"},
                               {'1', "N\t20\tc\t38\tROUNDDOWN\n"},
                               {'2', "N\t9\tc\t20\tROUNDFLOOR\n"},
                               {'d', "D\t10\tc\tD1\n"},
                               {'3', "D\t10\tc\tD5\n"},
                               {'4', "D\t8\tc\tD7\n"},
                               {'5', "D\t8\tc\tD10\n"},
                               {'6', "D\t5\tc\tD11\n"},
                               {'7', "D\t5\tc\tD14\n"},
                               {'t', "T\t8\tc\tT1\n"},
                               {'8', "T\t5\tc\tT2\n"},
                               {'9', "T\t8\tc\tT3\n"},
                               {'e', "E\t19\tc\tD1\tT1\n"},
                               {'h', "E\t14\tc\tD9\tT4\n"},
                               {'w', "A\t4095\tc\n"}};

/// The choices of an input's first line, from left to right; those that are missing are the first.
class Chooser {
 public:
  explicit Chooser(std::string_view bytes) : bytes_(bytes) {}

  bool at_end() const { return bytes_.empty(); }

  /// The choice that the next byte stands for.
  template <size_t N>
  const Choice& from(const Choice (&choices)[N]) {
    const unsigned char byte = next(static_cast<unsigned char>(choices[0].byte));
    for (const Choice& choice : choices) {
      if (choice.byte == static_cast<char>(byte)) return choice;
    }
    return choices[byte % N];
  }

  /// A number from 0 to 127 for one byte: '0' and its followers are 0 and so on.
  int number() { return (next('0') - '0') & 0x7f; }

 private:
  unsigned char next(unsigned char missing) {
    if (bytes_.empty()) return missing;
    const auto byte = static_cast<unsigned char>(bytes_.front());
    bytes_.remove_prefix(1);
    return byte;
  }

  std::string_view bytes_;
};

Refused refused_by(char file_type, char error_mode) {
  if (error_mode == 'K') return Refused::kLogged;
  if (file_type != 'F' || error_mode == 'S') return Refused::kNone;
  return error_mode == 'C' ? Refused::kMismatching : Refused::kAny;
}

/// Copies of the data, up to some hundred lines: several batches and shares of some size.
std::string repeated(std::string_view data, int copies) {
  constexpr size_t kMost = 2'500;  // some hundred short lines
  std::string text(data);
  for (int i = 1; i < copies && text.size() + data.size() <= kMost; ++i) text += data;
  return text;
}

ImportInput input_of(std::string_view bytes) {
  const size_t line_end = bytes.find('\n');
  const std::string_view data =
      line_end == std::string_view::npos ? std::string_view() : bytes.substr(line_end + 1);
  Chooser chooser(bytes.substr(0, line_end));
  const Choice& file_type = chooser.from(kFileTypes);
  const Choice& error_mode = chooser.from(kErrorModes);
  const Choice& title = chooser.from(kTitles);
  ImportInput input;
  input.workers = 2 + chooser.number() % 4;
  input.bytes_per_worker = 1 + chooser.number();
  const int block = chooser.number();
  input.read_block = 1 + block * block;
  input.append_pos = chooser.number();
  input.append_rows = chooser.number();
  const int settings = chooser.number();
  RQXSetTailSpaceFlag(settings % 2);
  RQXSetKanjiCode(settings / 2 % 7);
  const int copies = chooser.number();
  input.data = repeated(data, copies < 10 ? copies : copies * copies);
  input.catalog = std::string(file_type.text) + error_mode.text + title.text;
  constexpr int kMostColumns = 40;  // more are slow and lead nowhere else
  for (int i = 0; i == 0 || (i < kMostColumns && !chooser.at_end()); ++i) {
    input.catalog += chooser.from(kColumns).text;
  }
  input.title_line = *title.text != '\0';
  input.refused = refused_by(file_type.byte, error_mode.byte);
  return input;
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qxe::test::check_import(input_of({reinterpret_cast<const char*>(data), size}));
  return 0;
}
