#include "search/search_condition.h"

#include "storage/charcode.h"

namespace qxe {

namespace {

[[noreturn]] void refuse(const char* layer, const char* logged, const char* thrown, int code) {
  report(layer, QX_ERROR_OPERATION, "%s", logged);
  throw CQXException(QX_ERROR_OPERATION, thrown, code);
}

}  // namespace

SearchCondition normalized_condition(const char* layer, int ope, bool negate, bool strings) {
  SearchCondition condition{ope & 0x7f, (ope & QX_OPE_STRICT) != 0, negate};
  switch (condition.code) {
    case QX_OPE_EQ:
    case QX_OPE_BETWEEN:
    case QX_OPE_LEQ:
    case QX_OPE_WITHIN:
    case QX_OPE_LES: return condition;
    case QX_OPE_GEQ: return {QX_OPE_LES, condition.strict, !negate};
    case QX_OPE_NEQ: return {QX_OPE_EQ, condition.strict, !negate};
    case QX_OPE_GT: return {QX_OPE_LEQ, condition.strict, !negate};
    case QX_OPE_BEGINS:
    case QX_OPE_CONTAINS:
    case QX_OPE_ENDS:
      if (strings) return condition;
      refuse(layer, "Illegal data type ( Not STRING )",
             "String operation for Integer column is not allowed.", condition.code);
    case QX_OPE_ISNULL:
      if (!strings) return condition;
      refuse(layer, "Illegal data type ( Is STRING )",
             "'IS NULL' operation for String column is not allowd.", condition.code);
    default:
      refuse(layer, "Invalid Parameter : OpeNo", "Unknown operation number: %d", condition.code);
  }
}

namespace {

/// What hits when `inside` does before negation. `first_number` 1 keeps value number 0 out of the
/// negation.
RangeTest with_negation(ValueRange inside, bool negate, int first_number, int size) {
  if (inside.empty()) inside = {0, 0};
  if (!negate) return {inside, {}};
  if (inside.empty()) return {{first_number, size}, {}};
  ValueRange below{first_number, inside.first};
  ValueRange above{inside.end > first_number ? inside.end : first_number, size};
  if (below.empty()) below = {0, 0};
  if (above.empty()) above = {0, 0};
  return {below, above};
}

}  // namespace

RangeTest number_ranges(const SearchCondition& condition, BoundPosition first, BoundPosition second,
                        int size) {
  const bool negate = condition.negate;
  // NULL (value number 0) is never below or equal to a bound, yet its negation must count it in.
  const int lowest = negate ? 0 : 1;
  // A search for what differs from a value leaves NULL out, strict or not.
  const bool exclude_null = negate && (condition.strict || condition.code == QX_OPE_EQ);
  const int first_number = exclude_null ? 1 : 0;
  switch (condition.code) {
    case QX_OPE_EQ:
      return with_negation({first.lower(), first.found ? first.upper() : first.lower()}, negate,
                           first_number, size);
    case QX_OPE_BETWEEN:
      return with_negation({first.lower(), second.upper()}, negate, first_number, size);
    case QX_OPE_LEQ: return with_negation({lowest, first.upper()}, negate, first_number, size);
    case QX_OPE_WITHIN:
      return with_negation({first.upper(), second.lower()}, negate, first_number, size);
    case QX_OPE_LES: return with_negation({lowest, first.lower()}, negate, first_number, size);
    default:  // QX_OPE_ISNULL
      return with_negation({0, 1}, negate, first_number, size);
  }
}

RangeTest text_ranges(const SearchCondition& condition, BoundPosition first, BoundPosition second,
                      int size, bool empty_value1) {
  const bool negate = condition.negate;
  switch (condition.code) {
    case QX_OPE_EQ:
      return with_negation({first.lower(), first.found ? first.upper() : first.lower()}, negate, 0,
                           size);
    case QX_OPE_BETWEEN: return with_negation({first.lower(), second.upper()}, negate, 0, size);
    case QX_OPE_LEQ: {
      // Nothing is at most the empty string, unless NULL-strict or negated: then "" itself is.
      const bool nothing = empty_value1 && !negate && !condition.strict;
      return with_negation({0, nothing ? 0 : first.upper()}, negate, 0, size);
    }
    case QX_OPE_WITHIN: return with_negation({first.upper(), second.lower()}, negate, 0, size);
    case QX_OPE_LES: return with_negation({0, empty_value1 ? 0 : first.lower()}, negate, 0, size);
    default:  // QX_OPE_BEGINS: `second` is the first text that no longer begins with value1
      if (empty_value1) return with_negation({0, size}, negate, 0, size);
      return with_negation({first.lower(), second.lower()}, negate, 0, size);
  }
}

bool has_tail(const char* text, const char* pattern) {
  const size_t length = strlen(text);
  const size_t tail = strlen(pattern);
  return length >= tail && memcmp(text + (length - tail), pattern, tail) == 0;
}

namespace {

bool contains(const char* text, const char* pattern) {
  return qxembsstr(text, pattern) != nullptr;
}

bool ends_with(const char* text, const char* pattern) {
  if (!has_tail(text, pattern)) return false;
  const char* const tail = text + (strlen(text) - strlen(pattern));
  return getSystemInfoDBCharCode() == QX_CODE_CP1252 || ismbsptr_locale(text, tail);
}

}  // namespace

TextCondition text_condition(const SearchCondition& condition, const char* value1) {
  return condition.code == QX_OPE_CONTAINS
             ? TextCondition{contains, value1, value1, condition.negate}
             : TextCondition{ends_with, value1, "", condition.negate};
}

}  // namespace qxe
