// What differs between the table sections of files and images.
#pragma once

#include "storage/charcode.h"

namespace qxe {

struct TableForm {
  int id = 0;                         // the table's id in the section
  bool one_set = false;               // the set of all rows alone
  const int* versions = QxeVersions;  // four words
};

}  // namespace qxe
