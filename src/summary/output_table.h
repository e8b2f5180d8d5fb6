// The table that a summary's results go into.
#pragma once

#include <memory>

#include "tables/realtables.h"

namespace qxe {

/// While it lives, generated names repeat what the names they are made of end in.
class UntrimmedNames : NonCopyable {
 public:
  UntrimmedNames();
  ~UntrimmedNames();

 private:
  const bool before_;
};

/// A new table under a free name that tells of `source`, not yet in the collection. Throws
/// QX_ERROR_TABLE_COUNT or QX_ERROR_TABLE_NAME.
std::unique_ptr<TRealTable> new_output_table(const TBaseTable& source, int rows);

}  // namespace qxe
