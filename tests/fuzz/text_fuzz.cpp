// Any bytes as data. The first line of the input chooses the catalog and the division of the work:
// file type, error mode, title, workers, bytes worth a worker, bytes read at once, row to append
// at, rows to append, settings, copies of the data, and then the columns, one byte each.
#include <string>
#include <string_view>

#include "fuzz/choices.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/import_check.h"
#include "qxe.h"

namespace {

using qxe::test::Choice;
using qxe::test::Chooser;
using qxe::test::ImportInput;
using qxe::test::Refused;

constexpr Choice<const char*> kFileTypes[] = {{'C', "//CSV\n"},
                                              {'T', "//TAB\n"},
                                              {'F', "//FIX\n"},
                                              {'U', "//USR\t;\n"},
                                              {'V', "//USR\t\\t\tx\t1\n"},
                                              {'W', "//USR\t;\t|\t:\t#\t!\n"},
                                              {'Q', "//USR\t\"\t,\n"},
                                              {'H', "//USR\t\xe3\t\xff\n"}};

constexpr Choice<const char*> kErrorModes[] = {{'S', "//ERROR\tSTOP\n"},
                                               {'C', "//ERROR\tCONTINUE\n"},
                                               {'N', "//ERROR\tNONE\n"},
                                               {'K', "//ERROR\tSKIPLINE\n"}};

constexpr Choice<const char*> kTitles[] = {{'-', ""}, {'t', "//CUTTOP\n"}};

// Letters are types, capitals their plain form; digits further forms.
constexpr Choice<const char*> kColumns[] = {{'I', "I\t4\tc\n"},
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
  const auto& file_type = chooser.from(kFileTypes);
  const auto& error_mode = chooser.from(kErrorModes);
  const auto& title = chooser.from(kTitles);
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
  input.catalog = std::string(file_type.stands_for) + error_mode.stands_for + title.stands_for;
  constexpr int kMostColumns = 40;  // more are slow and lead nowhere else
  for (int i = 0; i == 0 || (i < kMostColumns && !chooser.at_end()); ++i) {
    input.catalog += chooser.from(kColumns).stands_for;
  }
  input.title_line = *title.stands_for != '\0';
  input.refused = refused_by(file_type.byte, error_mode.byte);
  return input;
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qxe::test::check_import(input_of({reinterpret_cast<const char*>(data), size}));
  return 0;
}
