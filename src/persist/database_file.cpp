#include "persist/database_file.h"

#include "frame/base/error_ring.h"
#include "persist/file_carriers.h"
#include "persist/file_form.h"
#include "persist/file_place.h"
#include "storage/strings.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

constexpr char kBadDirectory[] = "Invalid Parameter : DBPath";

}  // namespace

void TTableCollection::SaveDB(char* path, const char* name) {
  check_place("SaveDB", path, name);
  if (!has_working_directory()) return;  // deliberate: as if it had been saved
  const std::string directory = absolute_directory("SaveDB", kBadDirectory, path);
  qxe_strlcpy(path, directory.c_str(), kPathSize);
  const std::string file = with_extension(name, kDatabaseExtension);
  const FileForm form(old_version_);
  FileWriter writer(file_in(directory, file), kBinaryWrite);
  writer.write(form.header, 1, sizeof form.header);
  save_sections(writer, form.versions);
  writer.close();
  remember_place(directory, file);
}

void TTableCollection::ReSave() {
  if (*database_path_ == '\0' || *database_name_ == '\0') {
    throw CQXException(report("ReSave", QX_ERROR_FILE_NAME, "Illegal FileName"));
  }
  char path[kPathSize];
  qxe_strlcpy(path, database_path_, sizeof path);
  SaveDB(path, std::string(database_name_).c_str());
}

void TTableCollection::remember_place(const std::string& path, const std::string& name) {
  qxe_strlcpy(database_path_, path.c_str(), kPathSize);
  qxe_strlcpy(database_name_, name.c_str(), kPathSize);
}

std::unique_ptr<TTableCollection> load_database(const char* directory, const char* name) {
  const std::string path = absolute_directory("TTableCollection", kBadDirectory, directory);
  const std::string file = with_extension(name, kDatabaseExtension);
  FileReader reader(file_in(path, file));
  reader.read_header();
  auto database = std::make_unique<TTableCollection>(reader);
  database->remember_place(path, file);
  return database;
}

}  // namespace qxe
