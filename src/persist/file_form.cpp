#include "persist/file_form.h"

#include <string.h>

#include <algorithm>

#include "frame/base/error_ring.h"
#include "storage/charcode.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

FileForm::FileForm(bool old_version) {
  constexpr int kDataVersion = 1;  // among the version words
  constexpr int kCharCode = 4;     // in the header
  std::copy_n(QxeVersions, 4, versions);
  memcpy(header, QxeSysInfo, sizeof header);
  if (!old_version) return;
  versions[kDataVersion] = QX_DATA_VERSION_OLD;
  header[kCharCode] = 0;
}

namespace {

bool has_decimals(const TBaseTable& table) {
  if (table.GetType() != TableKind::kReal) return false;  // a join's columns are its tables'
  const auto& real = static_cast<const TRealTable&>(table);
  for (int i = 0; i < real.GetNFilter(); ++i) {
    if (real.filter_at(i)->VL->GetDataType() == QX_DT_DECIMAL) return true;
  }
  return false;
}

}  // namespace

int TTableCollection::NumericUsedCheck(int table) const {
  if (table != 0) {
    const TBaseTable* const target = GetTable(table);
    if (target == nullptr) return QX_ERROR_NO_TABLE;
    return has_decimals(*target) ? QX_ERROR_SAVE_VERSION : 0;
  }
  const bool any = std::any_of(tables_.begin(), tables_.end(),
                               [](const auto& each) { return has_decimals(*each); });
  return any ? QX_ERROR_SAVE_VERSION : 0;
}

}  // namespace qxe
