// Integer columns. Most are dense - identifiers, quantities, small codes - and are numbered through
// a table by value; the others through a dictionary.
#include <algorithm>
#include <limits>

#include "import/digits.h"
#include "import/fields.h"
#include "import/import_step.h"
#include "search/value_dictionary.h"
#include "storage/strings.h"

namespace qxe {

namespace {

/// A table of value numbers is made for up to this many integers a row.
constexpr long kDenseFactor = 8;
constexpr long kDenseMargin = 1000;

}  // namespace

int CInt_Field::convert(Cell cell, bool* bad) const {
  if (const void* const zero = memchr(cell.text, '\0', static_cast<size_t>(cell.size))) {
    cell.size = static_cast<int>(static_cast<const char*>(zero) - cell.text);
  }
  char room[kMaxQuotedCell];
  const std::string_view number = stripSpace({cell.text, static_cast<size_t>(cell.size)}, room);
  return Str2Int(number, checked_, bad);
}

void CInt_Field::Str2Data(std::span<const Cell> cells, std::vector<int>& bad) {
  int* const rows = rows_.extend(static_cast<long>(cells.size()));
  for (size_t i = 0; i < cells.size(); ++i) {
    const Cell& cell = cells[i];
    rows[i] = short_digits(cell.text, cell.size);
    if (rows[i] >= 0) continue;
    bool is_bad = false;
    rows[i] = cell.size == 0 ? QX_NULL_INT : convert(cell, &is_bad);
    if (is_bad && checked_) bad.push_back(static_cast<int>(i));
  }
}

void CInt_Field::Compile() {
  low_ = std::numeric_limits<int>::max();
  high_ = QX_NULL_INT;
  const int* const rows = rows_.data();
  for (long i = 0; i < rows_.size(); ++i) {
    const bool is_null = rows[i] == QX_NULL_INT;
    low_ = std::min(low_, is_null ? low_ : rows[i]);
    high_ = std::max(high_, rows[i]);
    values_ += is_null ? 0 : 1;
  }
}

std::unique_ptr<TBaseArray> CInt_Field::merge(std::span<CField* const> shares) {
  int low = std::numeric_limits<int>::max();
  int high = QX_NULL_INT;
  long values = 0;
  for (CField* const share : shares) {
    const auto& own = static_cast<CInt_Field&>(*share);
    low = std::min(low, own.low_);
    high = std::max(high, own.high_);
    values += own.values_;
  }
  if (values == 0) return merge_dense(shares, 0, 0);
  const long span = static_cast<long>(high) - low + 1;
  const bool dense = span <= kDenseFactor * values + kDenseMargin;
  return dense ? merge_dense(shares, low, span) : merge_sparse(shares);
}

std::unique_ptr<TBaseArray> CInt_Field::merge_dense(std::span<CField* const> shares, int low,
                                                    long span) {
  // A table of marks per share, so that workers do not write to the same memory.
  std::vector<Block<char>> marks(shares.size());
  for (auto& own : marks) own = make_cleared_block<char>(span);
  run_import_step(QX_MPP_IMPORT_MERGE, static_cast<int>(shares.size()), [&](int worker) {
    const auto share = static_cast<size_t>(worker);
    static_cast<CInt_Field&>(*shares[share]).mark_values(low, marks[share].get());
  });
  char* const used = marks[0].get();
  for (size_t share = 1; share < marks.size(); ++share) {
    const char* const other = marks[share].get();
    for (long i = 0; i < span; ++i) used[i] = static_cast<char>(used[i] | other[i]);
  }
  const int size = 1 + static_cast<int>(std::count(used, used + span, 1));
  auto list = std::make_unique<TIntArray>(size, make_block<int>(size + 1));
  int* const values = list->values();
  numbers_ = make_block<int>(span + 1);
  values[0] = QX_NULL_INT;
  numbers_[0] = 0;
  int number = 1;
  for (long i = 0; i < span; ++i) {  // a value that does not occur is overwritten by the next
    values[number] = static_cast<int>(low + i);
    numbers_[static_cast<size_t>(i) + 1] = number;
    number += used[i];
  }
  for (CField* const share : shares) {
    auto& own = static_cast<CInt_Field&>(*share);
    own.dense_ = numbers_.get();
    own.dense_low_ = low;
  }
  return list;
}

void CInt_Field::mark_values(int low, char* marks) const {
  const int* const rows = rows_.data();
  for (long i = 0; i < rows_.size(); ++i) {
    if (rows[i] != QX_NULL_INT) marks[static_cast<long>(rows[i]) - low] = 1;
  }
}

std::unique_ptr<TBaseArray> CInt_Field::merge_sparse(std::span<CField* const> shares) {
  std::vector<ValueDictionary<TIntArray>> distinct(shares.size());
  run_import_step(QX_MPP_IMPORT_MERGE, static_cast<int>(shares.size()), [&](int worker) {
    const auto share = static_cast<size_t>(worker);
    auto& own = static_cast<CInt_Field&>(*shares[share]);
    distinct[share].code_of(QX_NULL_INT);
    distinct[share].codes_of(own.rows_.data(), own.rows_.size(), own.rows_.data());
  });
  std::vector<ValueSource<TIntArray>> sources;
  long total = 0;
  for (size_t i = 0; i < shares.size(); ++i) {
    auto& own = static_cast<CInt_Field&>(*shares[i]);
    own.numbers_ = make_block<int>(distinct[i].size());
    sources.push_back(distinct[i].source(own.numbers_.get()));
    total += distinct[i].size();
  }
  ValueList<TIntArray> list =
      sort_distinct(std::span<const ValueSource<TIntArray>>(sources), sorting_workers(total));
  return mpp_make_value_array(QX_DT_INTEGER, list.size, as_bytes(std::move(list.values)));
}

void CInt_Field::number_rows(int* out) const {
  const int* const rows = rows_.data();
  const long count = rows_.size();
  if (dense_ == nullptr) {
    for (long i = 0; i < count; ++i) out[i] = numbers_[static_cast<size_t>(rows[i])];
    return;
  }
  const int* const numbers = dense_ + 1;
  for (long i = 0; i < count; ++i) {
    out[i] = rows[i] == QX_NULL_INT ? 0 : numbers[static_cast<long>(rows[i]) - dense_low_];
  }
}

}  // namespace qxe
