// What must hold for the import of any catalog and any data: the parallel form does what one worker
// does, each line is stored or refused, tables are well formed, and an append stores what the
// import has stored.
#pragma once

#include <string>

namespace qxe::test {

/// Which lines of the data are left out.
enum class Refused {
  kAny,         // not known
  kNone,        // none
  kLogged,      // each has a line in the log, which has no others
  kMismatching  // each has a line about its width in the log, which has others too
};

/// One input of a fuzz target.
struct ImportInput {
  std::string catalog;
  std::string data;
  bool title_line = false;  // by the catalog; counts with `refused` alone
  Refused refused = Refused::kAny;
  int workers = 3;  // of the parallel form
  int bytes_per_worker = 1;
  int read_block = 7;   // bytes that a worker reads at once
  int append_pos = 1;   // row to append at, as far as the table has as many
  int append_rows = 2;  // how many
};

/// Whether one thread takes the shares of all workers in turn: many times as fast for small inputs,
/// and the same each time. The fuzz programs set it; the replay leaves it to the workers.
extern bool shares_in_turn;

/// Prints why and aborts when one of these does not hold.
void check_import(const ImportInput& input);

}  // namespace qxe::test
