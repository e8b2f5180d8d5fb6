#include "joins/block_access.h"

#include <algorithm>

#include "storage/family.h"
#include "tables/cell_read.h"
#include "tables/realtables.h"

namespace qxe {

std::unique_ptr<TJoinBlockAccess> JBAs[QX_N_JBA];

std::unique_ptr<TJoinBlockAccess>* block_access_place(int slot) {
  return slot < 0 || slot >= QX_N_JBA ? nullptr : &JBAs[slot];
}

namespace {

constexpr char kLayer[] = "QXJBAOpen";
constexpr int kMostDriven = 1000000;

}  // namespace

TJoinBlockAccess::TJoinBlockAccess(int slot, TBaseTable& table, int set, const int* filters)
    : slot_(slot),
      table_(table),
      join_(table.GetType() == TableKind::kJoin ? static_cast<TJoinTable*>(&table) : nullptr),
      set_(set == -1 ? table.GetCurrentSetID() : set) {
  if (set_ < 0) {
    throw CQXException(report(kLayer, QX_ERROR_NO_SET_ID, "No Such Set: %d", set));
  }
  if (table.GetSet(set_) == nullptr) {
    throw CQXException(report(kLayer, QX_ERROR_NO_JOIN_SET, "No Such Set: %d", set));
  }
  if (table.GetSetSize(set_) < 1) {
    throw CQXException(report(kLayer, QX_JBA_EMPTY_SET, "GetSetSize failed!:"));
  }
  if (join_ == nullptr) static_cast<TRealTable&>(table).CheckMergeFilterTVL(true);
  measure_blocks();
  setup_columns(filters);
  visit(table);
}

void TJoinBlockAccess::table_goes() {
  JBAs[slot_].reset();
}

const JoinSet* TJoinBlockAccess::join_set() const {
  const JoinSet* const set = join_->find_set(set_);
  if (set != nullptr) return set;
  throw CQXException(QX_ERROR_NO_JOIN_SET);
}

void TJoinBlockAccess::measure_blocks() {
  if (join_ == nullptr) return;
  const JoinSet& set = *join_set();
  const DrivingStarts starts = set.driving_starts();
  int largest = 0;
  for (int i = 0; i < starts.count; ++i) {
    largest = std::max(largest, starts.end_of(i) - starts.begin_of(i));
  }
  if (largest > kMostDriven) {
    throw CQXException(
        report(kLayer, QX_ERROR_BLOCK_SIZE, "Invalid Parameter : BlockSize(%d)", largest));
  }
  largest_block_ = largest;
}

void TJoinBlockAccess::setup_columns(const int* filters) {
  std::vector<int> ids(kMaxColumns);
  if (filters == nullptr) {
    ids.resize(static_cast<size_t>(table_.GetFilterIDList(ids.data())));
  } else {
    const int* const end =
        std::find_if(filters, filters + kMaxColumns, [](int id) { return id < 1; });
    ids.assign(filters, end);
  }
  for (const int id : ids) {
    const TFilter* const filter = table_.GetFilter(id);
    if (filter == nullptr) {
      throw CQXException(report(kLayer, QX_ERROR_NO_FILTER, "No Such Filter: %d", id));
    }
    int side = 0;
    if (join_ != nullptr) join_->GetJoinSrcFltID(id, &side);
    const bool driving = join_ == nullptr || side == join_set()->direction;
    columns_.push_back({.driving = static_cast<unsigned char>(driving ? 1 : 0),
                        .type = static_cast<unsigned char>(filter->data_type()),
                        .filterId = id,
                        .count = 0,
                        .values = nullptr});
    values_.emplace_back();
  }
}

int TJoinBlockAccess::block_count() const {
  if (join_ == nullptr) return table_.GetSetSize(set_);
  const JoinSet& set = *join_set();
  return set.rows[set.direction]->FArraySize;
}

JoinBlock TJoinBlockAccess::join_block(const JoinSet& set) const {
  const int i = next_ - 1;
  const TSetArray& driving = *set.rows[set.direction];
  const DrivingStarts starts = set.driving_starts();
  const int first = starts.begin_of(i);
  const int end = starts.end_of(i);
  const int row = driving.PIntAr()[i];
  const int key = join_->key().side(set.direction)(row);
  const int run = std::as_const(*set.index[set.driven()]).PIntAr()[key];
  const int* const driven = std::as_const(*set.rows[set.driven()]).PIntAr() + run;
  return {next_, first + 1, end, row, end - first, const_cast<int*>(driven)};  // only read
}

JoinBlock TJoinBlockAccess::real_block() const {
  const TSetArray& rows = *table_.GetSet(set_);
  return {next_, next_, next_, rows.PIntAr()[next_ - 1], 1, nullptr};
}

namespace {

void* value_address(const TBaseArray& values, int index) {
  return with_family(values, [index]<class Array>(const Array& own) -> void* {
    if constexpr (std::is_same_v<Array, TStrArray>) {
      return const_cast<char*>(view_of(own)[index]);  // clients only read
    } else {
      return const_cast<typename Family<Array>::Value*>(own.values() + index);
    }
  });
}

}  // namespace

void TJoinBlockAccess::fill_column(size_t column, const JoinBlock& block) {
  _TColumnBuf& out = columns_[column];
  const TFilter* const filter = table_.GetFilter(out.filterId);
  if (filter == nullptr) throw CQXException(QX_ERROR_NO_FILTER, "No Such Filter");
  const bool driving = out.driving != 0;
  std::vector<void*>& values = values_[column];
  values.resize(static_cast<size_t>(driving ? 1 : block.slave_count));
  const int* const rows = driving ? &block.master_row : block.slave_rows;
  for (size_t i = 0; i < values.size(); ++i) {
    const int number = value_number(*filter, rows[i]);
    values[i] = value_address(filter->values_of(number), std::abs(number));
  }
  out.count = static_cast<int>(values.size());
  out.values = values.data();
}

int TJoinBlockAccess::ReadBlock(JoinBlock* block) {
  const int blocks = block_count();
  if (next_ > blocks) {
    report("QXJBARead", QX_ERROR_NO_SET, "Invalid Parameter : BlockNo");
    return -1;
  }
  *block = join_ == nullptr ? real_block() : join_block(*join_set());
  for (size_t i = 0; i < columns_.size(); ++i) fill_column(i, *block);
  return next_++ < blocks ? 1 : 0;
}

}  // namespace qxe
