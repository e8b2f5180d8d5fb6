// What a call that reads files has left, so that two forms of the same call can be compared.
#pragma once

#include <string>

namespace qxe::test {

struct Outcome {
  int status = 0;
  std::string log;    // without its banner
  std::string ring;   // of failures
  std::string table;  // table_image; empty without a table

  bool operator==(const Outcome&) const = default;
};

std::string to_text(const Outcome& outcome);

/// The outcome of a call that read files of `directory`, without a table. All other files there are
/// its logs; they are deleted. Fails when the call did without a ring entry.
Outcome outcome_of(int status, const std::string& directory, const std::string& own_file);

/// Fails when they differ.
void expect_same(const char* what, const Outcome& serial, const Outcome& parallel);

}  // namespace qxe::test
