#include "persist/memory_images.h"

#include "persist/memory_carrier.h"
#include "persist/table_form.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

OwnImage MemRealTable;

namespace {

long table_size(TRealTable& table, bool one_set) {
  ImageSize size;
  table.SaveTable(size, {.id = table.id(), .one_set = one_set});
  return size.bytes() + ImageSize::kTrailer;
}

}  // namespace

long image_size(TRealTable& table) {
  return table_size(table, false);
}

void* save_table_image(TRealTable& table, void* block, long size) {
  CMemFile image(block, size);
  image.write_header();
  table.SaveTable(image, {.id = table.id(), .one_set = true});
  image.write_trailer();
  return image.end();
}

int load_table_image(TTableCollection& tables, void* block, long size, void** end) {
  CMemFile image(block, size);
  image.read_header();
  const int id = tables.load_section(image);
  if (end != nullptr) *end = image.end();
  return id;
}

void* save_database_image(const TTableCollection& tables, void* block, long size) {
  CMemFile image(block, size);
  image.write_header();
  tables.save_sections(image, QxeVersions);
  return image.end();
}

OwnImage make_table_image(TRealTable& table) {
  const long room = table_size(table, true);
  OwnImage image{make_block<char>(room)};
  image.size =
      static_cast<char*>(save_table_image(table, image.bytes.get(), room)) - image.bytes.get();
  auto* const exact =
      static_cast<char*>(zvk_realloc(image.bytes.get(), static_cast<size_t>(image.size)));
  (void)image.bytes.release();  // moved to its new place
  image.bytes.reset(exact);
  return image;
}

}  // namespace qxe
