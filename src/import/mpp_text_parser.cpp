#include "import/mpp_text_parser.h"

#include "import/plain_text_parser.h"
#include "search/compiler_steps.h"

namespace qxe {

int mpp_text_parser(void* block) {
  return run_pool_step(block);
}

CMppTextParser::CMppTextParser(const ColumnDescription& column)
    : layout_(CPlainTextParser::layout_of(column)), parse_(layout_, QX_MPP_TXT_PARSE) {}

Column CMppTextParser::DoParse(const std::string& file, int rows, int total_rows) {
  try {
    parse_.parse(file, rows);
  } catch (const CQXException& failure) {
    switch (failure.ErrorCode()) {
      case QX_ERROR_INVALID_DATA: throw CQXException(QX_ERROR_INVALID_DATA, "Illegal string data");
      case QX_ERROR_TEXT_FIELD: throw CQXException(QX_ERROR_TEXT_FIELD, "StringSize overflow");
      default: throw;
    }
  }
  return parse_.take_column(0, total_rows);
}

}  // namespace qxe
