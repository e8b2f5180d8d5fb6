#include "support/naive_model.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>

#include "support/naive_wildcard.h"

namespace qxe::test {

namespace {

bool begins(const std::string& text, const std::string& part) {
  return text.compare(0, part.size(), part) == 0;
}

bool contains(const std::string& text, const std::string& part, int locale) {
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    if (part.empty() || begins_character(text, at, locale)) return true;
  }
  return false;
}

bool ends(const std::string& text, const std::string& part, int locale) {
  return text.ends_with(part) && begins_character(text, text.size() - part.size(), locale);
}

bool is_text_operator(int code) {
  return code == QX_OPE_BEGINS || code == QX_OPE_CONTAINS || code == QX_OPE_ENDS;
}

bool is_text_hit(const Cell& value, int code, const Cell& part, int locale) {
  const auto& text = std::get<std::string>(value);
  const auto& wanted = std::get<std::string>(part);
  if (code == QX_OPE_BEGINS) return begins(text, wanted);
  return code == QX_OPE_CONTAINS ? contains(text, wanted, locale) : ends(text, wanted, locale);
}

/// Comparison with NULL as the lowest value and no further rule.
bool is_plain_hit(const Cell& value, int code, const Cell& bound1, const Cell& bound2) {
  switch (code) {
    case QX_OPE_EQ: return value == bound1;
    case QX_OPE_BETWEEN: return bound1 <= value && value <= bound2;
    case QX_OPE_LEQ: return value <= bound1;
    case QX_OPE_GEQ: return value >= bound1;
    case QX_OPE_NEQ: return value != bound1;
    case QX_OPE_WITHIN: return bound1 < value && value < bound2;
    case QX_OPE_LES: return value < bound1;
    case QX_OPE_GT: return value > bound1;
    default: throw std::invalid_argument("no such operator: " + std::to_string(code));
  }
}

bool is_string_hit(const Cell& value, int ope, const Cell& bound1, const Cell& bound2, int locale) {
  const int code = ope & ~QX_OPE_STRICT;
  if (code == QX_OPE_BEGINS && std::get<std::string>(bound1).ends_with('\xFF')) return false;
  if (is_text_operator(code)) return is_text_hit(value, code, bound1, locale);
  if (ope == QX_OPE_LEQ && bound1 == Cell{std::string()}) return false;
  return is_plain_hit(value, code, bound1, bound2);
}

bool is_number_hit(const Cell& value, int ope, const Cell& bound1, const Cell& bound2) {
  const int code = ope & ~QX_OPE_STRICT;
  if (code == QX_OPE_ISNULL) return is_null(value);
  const bool reads_bound2 = code == QX_OPE_BETWEEN || code == QX_OPE_WITHIN;
  const bool null_bound = is_null(bound1) || (reads_bound2 && is_null(bound2));
  if ((ope & QX_OPE_STRICT) != 0 && null_bound) return false;
  const bool leaves_null_out = code == QX_OPE_LEQ || code == QX_OPE_LES || code == QX_OPE_NEQ;
  if (is_null(value) && leaves_null_out) return false;
  return is_plain_hit(value, code, bound1, bound2);
}

template <class Predicate>
std::vector<int> rows_that(const std::vector<int>& rows, Predicate&& predicate) {
  std::vector<int> kept;
  std::copy_if(rows.begin(), rows.end(), std::back_inserter(kept), predicate);
  return kept;
}

}  // namespace

bool begins_character(const std::string& text, size_t position, int locale) {
  const auto bytes_at = [&](size_t at) {
    return static_cast<size_t>(character_bytes(locale, static_cast<unsigned char>(text[at])));
  };
  if (position >= text.size()) return true;
  if (locale == QX_LOCALE_UTF8 || locale == QX_LOCALE_EUC) {  // longer characters are not walked
    size_t leads = 0;
    while (leads < position && bytes_at(position - leads - 1) > 1) ++leads;
    return leads % 2 == 0;
  }
  size_t at = 0;
  while (at < position) at += bytes_at(at);
  return at == position;
}

bool is_hit(int type, const Cell& value, int ope, const Cell& bound1, const Cell& bound2,
            int locale) {
  const Cell first = normal_form(bound1, type);
  const Cell second = normal_form(bound2, type);
  return type == QX_DT_STRING ? is_string_hit(value, ope, first, second, locale)
                              : is_number_hit(value, ope, first, second);
}

bool is_find_hit(int type, const Cell& value, int ope, const Cell& bound1, const Cell& bound2,
                 int locale) {
  const Cell first = normal_form(bound1, type);
  return is_text_operator(ope) ? is_text_hit(value, ope, first, locale)
                               : is_plain_hit(value, ope, first, normal_form(bound2, type));
}

int NaiveModel::total_rows() const {
  return columns_.empty() ? 0 : static_cast<int>(columns_.front().column.cells.size());
}

std::vector<int> NaiveModel::all_rows() const {
  std::vector<int> rows(static_cast<size_t>(total_rows()));
  std::iota(rows.begin(), rows.end(), 1);
  return rows;
}

const Column& NaiveModel::column(const std::string& name) const {
  for (const NamedColumn& named : columns_) {
    if (named.name == name) return named.column;
  }
  throw std::invalid_argument("no such column: " + name);
}

const Cell& NaiveModel::cell(const std::string& column_name, int row) const {
  return column(column_name).cells.at(static_cast<size_t>(row - 1));
}

std::vector<int> NaiveModel::search(const std::string& column_name, int ope, const Cell& bound1,
                                    const Cell& bound2, const std::vector<int>& rows) const {
  const int type = column(column_name).type;
  return rows_that(rows, [&](int row) {
    return is_hit(type, cell(column_name, row), ope, bound1, bound2, locale_);
  });
}

std::vector<int> NaiveModel::search_values(const std::string& column_name,
                                           const std::vector<Cell>& values,
                                           const std::vector<int>& rows) const {
  const int type = column(column_name).type;
  return rows_that(rows, [&](int row) {
    return std::any_of(values.begin(), values.end(), [&](const Cell& value) {
      return cell(column_name, row) == normal_form(value, type);
    });
  });
}

std::vector<int> NaiveModel::sort(const std::vector<SortKey>& keys, std::vector<int> rows) const {
  for (const SortKey& key : keys) {
    std::stable_sort(rows.begin(), rows.end(), [&](int left, int right) {
      if (key.direction == QX_SORT_DESC) std::swap(left, right);
      return cell(key.column, left) < cell(key.column, right);
    });
  }
  return rows;
}

}  // namespace qxe::test
