// What outlives a call and looks into a table from outside it: an open summary, a detail, a reader
// of blocks.
#pragma once

#include <vector>

#include "frame/base/memory.h"

namespace qxe {

class TBaseTable;

/// Such an object is a guest of the tables it keeps the address of, and is closed before any of
/// them goes.
class TableGuest : NonCopyable {
 public:
  virtual ~TableGuest();

  /// Ends the visit; this object does not exist any more then.
  virtual void table_goes() = 0;

 protected:
  void visit(TBaseTable& table);
  /// For a destructor that deletes one of the tables itself.
  void leave_tables();

 private:
  std::vector<TBaseTable*> tables_;
};

}  // namespace qxe
