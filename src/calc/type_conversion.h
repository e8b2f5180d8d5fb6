// Conversions of value lists into another data type, element by element. What has no counterpart in
// the other type becomes NULL: a conversion of a value never fails.
#pragma once

#include "storage/array.h"

namespace qxe {

/// Where converted values go.
struct ConversionTarget {
  void* values;     // int, double, Numeric or const char*, one for each element
  char* text_area;  // of strings: `text_slot` bytes for each element, so that slices stay apart
  int text_slot;
  NumericInfo info;  // of decimals
};

/// Converts the elements [start, end) of a value list. Element 0 becomes NULL whatever it is.
using SliceConversion = void (*)(const TBaseArray& source, const ConversionTarget& target,
                                 long start, long end);

/// The conversion between two data types (2 to 8); null where nothing is converted: for equal types
/// but decimals, whose scales may differ, and for what is no data type.
SliceConversion slice_conversion(int sourceType, int targetType);

/// Bytes that the text of any value of this list needs, with its terminator.
int conversion_text_slot(const TBaseArray& source);

/// Converts a whole value list on `workers` workers. Without a conversion it does nothing.
void DoTypeConv(const TBaseArray& source, int targetType, const ConversionTarget& target,
                int workers);

}  // namespace qxe
