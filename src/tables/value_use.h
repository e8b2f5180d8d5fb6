// Which values of a value list are used, and the list of those alone.
#pragma once

#include "storage/array.h"

namespace qxe {

/// The values that are left of a list.
struct UsedValues {
  std::unique_ptr<TBaseArray> list;  // of the same type, with the same attribute block
  Block<int> numbers;  // new number by old one; of values that are not used without meaning
};

/// NULL, number 0, counts as used.
class ValueUse {
 public:
  explicit ValueUse(int values);

  void mark(const int* numbers, int count);
  /// Whether nothing is left to be marked. All calls together look at each value once.
  bool all_used();

  /// The used ones of `list`, whose values have been marked here.
  UsedValues used_values(const TBaseArray& list) const;

 private:
  int size_;
  int first_unused_ = 1;  // all before are used
  Block<char> marks_;     // one for each value
};

/// Rows to look at between two calls of all_used: few enough to be still in the cache.
constexpr int kMarkedRows = 16384;

/// The values at these numbers, which ascend, with the list's attribute block.
std::unique_ptr<TBaseArray> values_at(const TBaseArray& list, const int* numbers, int count);
/// A copy of the whole list with its attribute block.
std::unique_ptr<TBaseArray> copied_values(TBaseArray& list);

}  // namespace qxe
