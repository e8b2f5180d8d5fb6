#include "persist/file_info.h"

#include "persist/data_version.h"
#include "persist/file_carriers.h"
#include "storage/strings.h"

namespace qxe {

_QXFileInfo read_file_info(const std::string& path, bool is_table) {
  FileReader reader(path);
  reader.read_header();
  if (is_table) read_field<int>(reader);
  _QXFileInfo info{};
  reader.read(info.version, sizeof info.version[0], 4);
  info.osType = static_cast<unsigned char>(reader.description().OSTYPE);
  info.endian = static_cast<unsigned char>(reader.description().Endian);
  info.elf = static_cast<unsigned char>(reader.description().ELF);
  // Deliberate: these two are the same for every file.
  qxe_strlcpy(info.charCode, "Shift_JIS", sizeof info.charCode);
  info.version[1] = kNewestVersion;
  return info;
}

}  // namespace qxe
