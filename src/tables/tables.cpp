#include "tables/tables.h"

#include <algorithm>

#include "storage/family.h"
#include "storage/strings.h"
#include "tables/table_guest.h"

namespace qxe {

TBaseTable::~TBaseTable() {
  while (!guests_.empty()) guests_.back()->table_goes();
}

void TBaseTable::remove_guest(TableGuest& guest) {
  guests_.erase(std::remove(guests_.begin(), guests_.end(), &guest), guests_.end());
}

TableGuest::~TableGuest() {
  leave_tables();
}

void TableGuest::leave_tables() {
  for (TBaseTable* const table : tables_) table->remove_guest(*this);
  tables_.clear();
}

void TableGuest::visit(TBaseTable& table) {
  tables_.reserve(tables_.size() + 1);
  table.add_guest(*this);
  tables_.push_back(&table);
}

void TBaseTable::set_name(const char* name) {
  qxe_strlcpy(table_name_, name, kNameSize);
}

int TBaseTable::GetSetIDList(int max, int* out) const {
  std::copy_n(set_ids_.begin(), std::min(max, set_count()), out);
  return set_count();
}

int TBaseTable::SetID2Pos(int id) const {
  const int wanted = id < 0 ? current_set_id_ : id;
  const auto place = std::lower_bound(set_ids_.begin(), set_ids_.end(), wanted);
  if (place == set_ids_.end() || *place != wanted) {
    return report("SetID2Pos", QX_ERROR_NO_SET, "No Such Set: %d", wanted);
  }
  return static_cast<int>(place - set_ids_.begin());
}

namespace {

int longest_text(const TBaseArray* texts, int first, int last) {
  if (texts == nullptr) return 0;
  const auto view = view_of(static_cast<const TStrArray&>(*texts));
  size_t longest = 0;
  for (int i = first; i <= last; ++i) longest = std::max(longest, strlen(view[i]));
  return static_cast<int>(longest);
}

}  // namespace

int TBaseTable::GetFilterWidth(int id) {
  const TFilter* const filter = GetFilter(id);
  if (filter == nullptr) {
    return report("GetFilterWidth", missing_filter(id), "No Such Filter: %d", id);
  }
  switch (filter->VL->GetDataType()) {
    case QX_DT_INTEGER: return sizeof(int);
    case QX_DT_DOUBLE: return sizeof(double);
    case QX_DT_DECIMAL: return sizeof(Numeric);
    case QX_DT_STRING:
      return std::max(longest_text(filter->VL, 1, filter->VL->FArraySize - 1),
                      longest_text(filter->TVL, 1, filter->pending()));
    default: return report("GetFilterWidth", QX_ERROR_DATA_TYPE, "Illegal data type");
  }
}

}  // namespace qxe
