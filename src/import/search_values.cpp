#include "import/search_values.h"

#include <algorithm>

#include "import/catalog_text.h"
#include "import/errlog.h"
#include "import/plain_text_parser.h"
#include "import/source_file.h"

namespace qxe {

SearchValues::SearchValues(std::unique_ptr<TBaseArray> list, int first)
    : list_(std::move(list)), first_(first), count_(list_->FArraySize - first) {
  if (list_->GetDataType() != QX_DT_STRING) return;
  for (int i = first; i < list_->FArraySize; ++i) {
    texts_.push_back(static_cast<const TStrArray&>(*list_).GetPChar(i));
  }
}

const void* SearchValues::data() const {
  if (count_ == 0) return nullptr;
  return texts_.empty() ? list_->GetAddress(first_) : texts_.data();
}

namespace {

/// One column whose values are not checked.
DataLayout unchecked_layout(int type) {
  ColumnDescription column;
  column.type = type;
  DataLayout layout = CPlainTextParser::layout_of(column);
  layout.error_mode = ErrorMode::kNone;
  return layout;
}

}  // namespace

SearchValues getValuesFromCSV(int type, const char* directory, const char* file) {
  check_path(directory, "pchFilePath");
  check_file_name(file, "pchFileName");
  const std::string path = build_AbsoluteName(CnvRelativeToAbsolute(directory), file);
  const FileText text = SourceFile(path).read_all();
  if (text.size == 0) return {};
  if (type == QX_DT_DECIMAL) {
    throw CQXException(QX_ERROR_DATA_TYPE, "Illegal data type  : %d", type);
  }
  const DataLayout layout = unchecked_layout(type);
  CatalogErrorInfo errors;
  CValueListParser parser(layout, path, errors);
  parser.ParseMem(text.begin(), text.end());
  CField* const values = &parser.field(0);
  auto list = values->merge({&values, 1});
  std::vector<int> numbers(static_cast<size_t>(values->rows()));
  values->number_rows(numbers.data());
  const bool has_null = std::find(numbers.begin(), numbers.end(), 0) != numbers.end();
  return SearchValues(std::move(list), has_null ? 0 : 1);
}

}  // namespace qxe
