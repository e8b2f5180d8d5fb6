// Bisection in a sorted value list.
#pragma once

#include "storage/family.h"

namespace qxe {

/// Index of the last entry that is not above `value`, 0 when all are above; `*found` says whether
/// an entry equals it. `list` is indexed by `[]` and has a `size` above 0.
template <class Value, class List>
int find_pos(const Value& value, const List& list, bool* found) {
  using Own = typename std::decay_t<List>;
  int low = 0;
  int high = list.size;  // entries below `low` are not above the value, from `high` on they are
  while (low < high) {
    const int middle = low + (high - low) / 2;
    if (Own::FamilyOf::compare(list[middle], value) > 0) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  const int position = low > 0 ? low - 1 : 0;
  *found = list.size > 0 && Own::FamilyOf::compare(list[position], value) == 0;
  return position;
}

/// Index into the ascending value numbers `numbers[0..n-1]` of the first whose entry is not below
/// `value`. One more than find_pos would give when the value is absent.
template <class Value, class List>
int find_pos_scope(const Value& value, int n, const int* numbers, const List& list, bool* found) {
  using Own = typename std::decay_t<List>;
  int low = 0;
  int high = n;
  while (low < high) {
    const int middle = low + (high - low) / 2;
    if (Own::FamilyOf::compare(list[numbers[middle]], value) < 0) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  *found = low < n && Own::FamilyOf::compare(list[numbers[low]], value) == 0;
  return low;
}

inline int FindPosInt(int value, const TIntArray& list, bool* found) {
  return find_pos(value, view_of(list), found);
}
inline int FindPosDouble(double value, const TDoubleArray& list, bool* found) {
  return find_pos(value, view_of(list), found);
}
inline int FindPosDecimal(const Numeric& value, const TNumericArray& list, bool* found) {
  return find_pos(value, view_of(list), found);
}
inline int FindPosStr(const char* value, const TStrArray& list, bool* found) {
  return find_pos(value, view_of(list), found);
}
inline int FindPosIntScope(int value, int n, const int* numbers, const TIntArray& list,
                           bool* found) {
  return find_pos_scope(value, n, numbers, view_of(list), found);
}
inline int FindPosDoubleScope(double value, int n, const int* numbers, const TDoubleArray& list,
                              bool* found) {
  return find_pos_scope(value, n, numbers, view_of(list), found);
}
inline int FindPosDecimalScope(const Numeric& value, int n, const int* numbers,
                               const TNumericArray& list, bool* found) {
  return find_pos_scope(value, n, numbers, view_of(list), found);
}
inline int FindPosStrScope(const char* value, int n, const int* numbers, const TStrArray& list,
                           bool* found) {
  return find_pos_scope(value, n, numbers, view_of(list), found);
}

}  // namespace qxe
