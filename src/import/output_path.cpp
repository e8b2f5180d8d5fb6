#include "import/output_path.h"

#include <string.h>

#include "frame/base/error_ring.h"
#include "import/catalog_text.h"

namespace qxe {

namespace {

constexpr size_t kNameSize = 512;

}  // namespace

std::string path_in(const char* directory, const char* name) {
  if (*directory == '\0' || *name == '/') return name;
  return std::string(directory) + "/" + name;
}

int check_output(const char* layer, const char* directory, const char* file) {
  if (directory == nullptr || file == nullptr) {
    return report(layer, QX_ERROR_FILE, "Illegal FileName");
  }
  if (!is_reachable_directory(*directory == '\0' ? "." : directory)) {
    return report(layer, QX_ERROR_PATH, "Invalid Parameter : Path(%s)", directory);
  }
  if (*file == '\0' || strlen(file) >= kNameSize) {
    return report(layer, QX_ERROR_FILE, "Illegal FileName");
  }
  return 0;
}

}  // namespace qxe
