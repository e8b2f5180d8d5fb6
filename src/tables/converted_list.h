// A value list in another data type, or of decimals at another scale: converting can make values
// equal and change their order, so the result is compiled anew.
#pragma once

#include "storage/array.h"

namespace qxe {

struct ConvertedList {
  std::unique_ptr<TBaseArray> list;
  Block<int> numbers;         // for each old value its number in the new list
  bool same_numbers = false;  // each value has kept its number
};

/// `list` as data type `type` (2 to 8), which must be another one unless both are decimals, whose
/// scale and rounding mode `info` tells. Values without a counterpart become NULL. With `mpp` the
/// workers of the pool share the work.
ConvertedList convert_list(const TBaseArray& list, int type, const NumericInfo& info, bool mpp);

/// New row pointers by the new number of each old one, with the old ones' attribute block.
std::unique_ptr<TIntArray> converted_rows(TIntArray& rows, const ConvertedList& converted);

}  // namespace qxe
