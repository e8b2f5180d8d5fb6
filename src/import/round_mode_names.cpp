#include "import/round_mode_names.h"

#include <strings.h>

#include <iterator>

#include "qxe_numeric.h"

namespace qxe {

namespace {

// At the positions of the modes' numbers.
constexpr const char* kModeNames[] = {"ROUNDUP",     "ROUNDDOWN",     "ROUNDCEILING", "ROUNDFLOOR",
                                      "ROUNDHALFUP", "ROUNDHALFDOWN", "ROUNDHALFEVEN"};
constexpr int kModes = static_cast<int>(std::size(kModeNames));
static_assert(kModes == QX_ROUND_HALFEVEN + 1);

}  // namespace

int TransNumericRoundType(const char* word) {
  for (int mode = 0; mode < kModes; ++mode) {
    if (strcasecmp(word, kModeNames[mode]) == 0) return mode;
  }
  return -1;
}

const char* TransNumericRoundType2Str(int mode) {
  return mode >= 0 && mode < kModes ? kModeNames[mode] : "";
}

}  // namespace qxe
