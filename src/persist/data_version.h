// Data versions: which layouts of a section can be read, and what told them apart.
#pragma once

#include "qxe.h"

namespace qxe {

class SectionReader;

/// Newer than every layout, and read as the current one.
constexpr int kNewestVersion = 102;
/// Up to here a section has room for a fixed number of set ids, whatever their number.
constexpr int kLastWithFixedSetIds = 23;
constexpr int kFixedSetIds = 100;
/// From here on filters have a high-speed flag, and sorted sets are saved.
constexpr int kFirstWithSortedSets = 23;

/// Reads the four version words and returns the data version. One that cannot be read leaves an
/// entry under `layer` and throws QX_ERROR_FILE_FORMAT.
int read_versions(SectionReader& reader, const char* layer);

}  // namespace qxe
