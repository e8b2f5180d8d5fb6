// What files are written for: the present data version, or the one before it. The layout is the
// same; the version words and the character code in the stream header tell them apart.
#pragma once

#include "persist/zvk_fstream.h"

namespace qxe {

struct FileForm {
  explicit FileForm(bool old_version);

  int versions[4];
  unsigned char header[kStreamHeaderSize];
};

}  // namespace qxe
