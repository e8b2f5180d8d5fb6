// Format files: digits and rounding of single columns of an export. A line holds a filter's name,
// the digits behind the point and a rounding mode, with tabs between them.
#pragma once

#include <vector>

#include "qxe_numeric.h"

namespace qxe {

struct EXPTFMT_t {
  char name[264];  // of the filter
  int decimals;    // -1: the column's own
  int rounding;    // QX_ROUND_..., -1: the column's own
};

using ExportFormats = std::vector<EXPTFMT_t>;

/// Reads a format file. Logs and returns QX_ERROR_FILE for a file that cannot be read and
/// QX_ERROR_CATALOG for a line that does not hold the three parts.
int readFmtInfo(const char* path, ExportFormats* list);

/// The last entry for a filter's name, or null.
const EXPTFMT_t* find_format(const ExportFormats& list, const char* name);

/// Digits of a column of doubles that has `own` ones: the entry's if they are 0 to 15.
int exported_decimals(int own, const EXPTFMT_t* format);
/// Scale and rounding of a column of decimals: the entry's if the scale is one.
NumericInfo exported_info(const NumericInfo& own, const EXPTFMT_t* format);

}  // namespace qxe
