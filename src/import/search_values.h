// Values to search for, from a text file.
#pragma once

#include <memory>
#include <vector>

#include "storage/array.h"

namespace qxe {

/// A list of values as a search for several values takes it.
class SearchValues {
 public:
  SearchValues() = default;
  /// The values of a list from number `first` on.
  SearchValues(std::unique_ptr<TBaseArray> list, int first);

  int count() const { return count_; }
  /// int, double, or pointers to texts.
  const void* data() const;

 private:
  std::unique_ptr<TBaseArray> list_;
  std::vector<const char*> texts_;  // of a list of texts
  int first_ = 0;
  int count_ = 0;
};

/// The distinct values of a file for a filter of data type `type`, separated by commas and line
/// ends; an empty one is NULL. They convert as unchecked cells of an import do. None for a file of
/// size 0. Throws QX_ERROR_FILE when it is missing, QX_ERROR_DATA_TYPE for decimals.
SearchValues getValuesFromCSV(int type, const char* directory, const char* file);

}  // namespace qxe
