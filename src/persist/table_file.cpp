// Table files: one table in a file of its own, or several in a row inside any file.
#include <string.h>

#include "frame/base/error_ring.h"
#include "persist/file_carriers.h"
#include "persist/file_form.h"
#include "persist/file_place.h"
#include "persist/table_form.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

constexpr char kBadDirectory[] = "Invalid Parameter : TablePath";

void check_path(const char* layer, const char* path) {
  if (path != nullptr && *path != '\0') return;
  throw CQXException(report(layer, QX_ERROR_FILE, "Illegal FileName"));
}

}  // namespace

TRealTable& TTableCollection::savable_table(const char* layer, int id) const {
  TBaseTable* const table = find(id);
  if (table == nullptr) {
    throw CQXException(report(layer, QX_ERROR_NO_TABLE, "No Such Table: %d ", id));
  }
  if (table->GetType() != TableKind::kReal) {
    throw CQXException(report(layer, QX_ERROR_SAVE_NOT_REAL, "Not RealTable"));
  }
  return static_cast<TRealTable&>(*table);
}

void TTableCollection::SaveRealTable(const char* path, int id) const {
  const TRealTable& table = savable_table("SaveRealTable", id);
  // A name that came with a database file may be none for a file.
  check_place("SaveRealTable", path, strchr(table.name(), '/') == nullptr ? table.name() : nullptr);
  const FileForm form(old_version_);
  save_table_file("SaveRealTable", path, std::string(table.name()) + kTableExtension, id,
                  form.header);
}

void TTableCollection::SaveRealTableAs(const char* path, const char* name, int id) const {
  savable_table("SaveRealTableAs", id);
  check_place("SaveRealTableAs", path, name);
  // Deliberate: the header is that of the present version even when the version words are not.
  save_table_file("SaveRealTableAs", path, with_extension(name, kTableExtension), id, QxeSysInfo);
}

void TTableCollection::save_table_file(const char* layer, const char* path, const std::string& file,
                                       int id, const unsigned char* header) const {
  const std::string directory = absolute_directory(layer, kBadDirectory, path);
  const FileForm form(old_version_);
  FileWriter writer(file_in(directory, file), kBinaryWrite);
  writer.write(header, 1, kStreamHeaderSize);
  find(id)->SaveTable(writer, {.id = id, .versions = form.versions});
  writer.close();
}

int TTableCollection::SaveRealTable2(const char* file, long offset, const int* ids,
                                     long* end) const {
  check_path("SaveRealTable2", file);
  const FileForm form(old_version_);
  FileWriter writer(file, kBinaryUpdate);
  writer.seek(offset);
  int status = 0;
  for (int i = 0; status == 0 && ids[i] != -1; ++i) {
    TBaseTable* const table = find(ids[i]);
    if (table == nullptr) {
      status =
          report("SaveRealTable2", QX_ERROR_NO_TABLE, "No Such Table: TblIDList[%d]%d ", i, ids[i]);
    } else if (table->GetType() != TableKind::kReal) {
      status = report("SaveRealTable2", QX_ERROR_NOT_REAL, "Illegal table type ( Not REAL )");
    } else {
      writer.write(form.header, 1, sizeof form.header);
      table->SaveTable(writer, {.id = ids[i], .one_set = true, .versions = form.versions});
    }
  }
  *end = writer.position();
  writer.close();
  return status;
}

int TTableCollection::LoadRealTable(const char* path, const char* name) {
  check_place("LoadRealTable", path, name);
  check_loadable();
  const std::string directory = absolute_directory("LoadRealTable", kBadDirectory, path);
  FileReader reader(file_in(directory, with_extension(name, kTableExtension)));
  reader.read_header();
  return load_section(reader);
}

int TTableCollection::LoadRealTable2(const char* file, long offset, int count, int* ids,
                                     long* end) {
  check_path("LoadRealTable2", file);
  if (count < 0) {
    return report("LoadRealTable2", QX_ERROR_NO_TABLE, "Invalid Parameter : TblCnt");
  }
  FileReader reader(file);
  reader.seek(offset);
  for (int i = 0; i < count; ++i) {
    reader.read_header();
    ids[i] = load_section(reader);
  }
  *end = reader.position();
  return FTblIDIssued;
}

}  // namespace qxe
