// Writes the seeds of database_fuzz: database_seeds DIRECTORY. Files of each kind, machine and
// version that can be read.
#include <stdio.h>

#include <string>
#include <vector>

#include "persist/file_bytes.h"
#include "support/files.h"

namespace qxe::test {
namespace {

struct Seed {
  const char* name;
  Origin origin;
};

const std::vector<Seed> kSeeds = {{"present", {}},
                                  {"version24", {.data_version = 24, .char_code = 0}},
                                  {"version20", {.data_version = 20}},
                                  {"headerless", {.data_version = 16, .header = false}},
                                  {"narrow", {.word = 4}},
                                  {"other_order", {.big_endian = true}}};

StoredTable marked_table(int id, const char* name) {
  StoredTable table = table_of_all_types(id, name);
  table.filters[0].high_speed = 1;
  table.marks = {{0, 0, {2, 3, 1}, 1}, {1, 0, {3, 1}, 0}, {0, 4, {}, 0}};
  return table;
}

void write_seeds(const std::string& directory) {
  for (const Seed& seed : kSeeds) {
    const StoredTable small{.id = 2, .name = "small", .sets = {{1}}};
    write_file(directory + "/seed_database_" + seed.name,
               "D2\n" + database_file({marked_table(1, "t"), small}, seed.origin).bytes);
    write_file(directory + "/seed_table_" + seed.name,
               "T1\n" + table_file(marked_table(1, "t"), seed.origin).bytes);
  }
}

}  // namespace
}  // namespace qxe::test

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: database_seeds DIRECTORY\n");
    return 1;
  }
  qxe::test::write_seeds(argv[1]);
  return 0;
}
