#include "persist/data_version.h"

#include <algorithm>
#include <iterator>

#include "frame/base/error_ring.h"
#include "persist/section_carrier.h"

namespace qxe {

namespace {

constexpr int kReadable[] = {
    15, 16, 20, 21, 22, 23, QX_DATA_VERSION_OLD, QX_DATA_VERSION, kNewestVersion};

}  // namespace

int read_versions(SectionReader& reader, const char* layer) {
  int versions[4] = {};
  reader.read(versions, sizeof versions[0], 4);
  const int version = versions[1];
  if (std::find(std::begin(kReadable), std::end(kReadable), version) == std::end(kReadable)) {
    throw CQXException(report(layer, QX_ERROR_FILE_FORMAT,
                              "Unspported DataVersion DataVer[1] = ------> %d", version));
  }
  return version;
}

}  // namespace qxe
