// Catalogs: small text files that tell how the lines of a data file are divided, what its columns
// are, and what to do about faults in it.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "import/fields.h"

namespace qxe {

class TRealTable;

enum class FileType : int { kNone = 0, kTab = 1, kCsv = 2, kFix = 3, kUser = 4 };

/// What a fault in the data does.
enum class ErrorMode : int {
  kNone = 0,      // nothing is logged, values are not checked
  kStop = 1,      // ends the import
  kContinue = 2,  // a bad value is NULL
  kSkipLine = 3   // a bad line is left out
};

/// One field of a data line.
struct InputField {
  int width;   // bytes in a file of fixed width
  int column;  // index of the column it fills, -1 for a field that is read and dropped
};

/// How the lines of a data file become columns.
struct DataLayout {
  FileType file_type = FileType::kNone;
  std::array<char, 5> separators{};  // of kUser; unused ones are 0
  bool title_line = false;           // the first line is dropped
  ErrorMode error_mode = ErrorMode::kStop;
  std::vector<ColumnDescription> columns;
  std::vector<InputField> inputs;

  bool checked() const { return error_mode != ErrorMode::kNone; }
};

/// Reads a catalog.
class CCatalogParser : NonCopyable {
 public:
  static constexpr int kMaxNameSize = 255;

  /// `directory` is the catalog's own; "//ERRORLOG" names are relative to it.
  explicit CCatalogParser(std::string directory) : directory_(std::move(directory)) {}

  /// Starts a new error log: deletes the default one and makes it the log.
  void init();
  /// Reads the catalog at `path` and returns the number of columns. Throws QX_ERROR_FILE when it is
  /// missing, QX_ERROR_CATALOG or QX_ERROR_NOT_STRING for a fault in it, all logged.
  int readInfo(const std::string& path);

  /// Makes the columns those of an append: the filters of `table` in display order. Throws after
  /// logging QX_ERROR_CATALOG for another number, which CONTINUE cuts to the smaller one; throws
  /// QX_ERROR_MERGE_TYPE for another type.
  void verifyItems(const TRealTable& table);

  const DataLayout& layout() const { return layout_; }

 private:
  using Tokens = std::vector<std::string>;

  struct WidthWord {
    std::string word;
    int row;
  };

  void read_line(const std::string& line);
  void read_directive(const Tokens& tokens);
  void set_user_separators(const Tokens& tokens);
  void set_error_mode(const std::string& word);
  void set_error_log(const std::string& name);
  void read_column(const Tokens& tokens);
  void read_options(const Tokens& tokens, ColumnDescription& column) const;
  void read_decimal_options(const Tokens& tokens, NumericInfo& info) const;
  void check_width(size_t input) const;
  void check_complete() const;
  void drop_columns(int kept);

  std::string directory_;
  std::string path_;
  int row_ = 0;                         // of the catalog, from 1
  std::vector<WidthWord> width_words_;  // of the inputs
  DataLayout layout_;
};

}  // namespace qxe
