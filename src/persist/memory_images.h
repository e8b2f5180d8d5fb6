// Tables and databases in blocks of memory: the form of their files, without the files.
#pragma once

#include "frame/base/memory.h"

namespace qxe {

class TRealTable;
class TTableCollection;

/// Bytes that suffice for any image of the table, trailer included.
long image_size(TRealTable& table);
/// Writes an image with the set of all rows alone; returns the place behind its trailer.
void* save_table_image(TRealTable& table, void* block, long size);
/// Reads an image as a new table, whose id it returns. `*end`: out, the place behind the table;
/// null if it is of no interest.
int load_table_image(TTableCollection& tables, void* block, long size, void** end);

/// Writes an image of all tables; returns the place behind it.
void* save_database_image(const TTableCollection& tables, void* block, long size);

/// An image in memory of the engine.
struct OwnImage {
  Block<char> bytes;
  long size = 0;
};
OwnImage make_table_image(TRealTable& table);
/// The one that was handed out last.
extern OwnImage MemRealTable;

}  // namespace qxe
