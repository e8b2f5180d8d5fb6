#include "fuzz/call_outcome.h"

#include <filesystem>
#include <set>

#include "fuzz/engine_state.h"
#include "support/engine_test.h"
#include "support/files.h"

namespace qxe::test {

namespace {

std::string taken_logs(const std::string& directory, const std::string& own_file) {
  std::set<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    if (entry.path().filename() != own_file) paths.insert(entry.path());
  }
  std::string logs;
  for (const std::string& path : paths) {
    const std::string log = read_file(path);
    const size_t banner = log.find("*/\n\n");
    if (banner == std::string::npos) finding("a log without a banner", printable(log));
    logs += log.substr(banner + 4);
    std::filesystem::remove(path);
  }
  return logs;
}

}  // namespace

std::string to_text(const Outcome& outcome) {
  return "status " + hex(outcome.status) + "\nring\n" + outcome.ring + "log\n" +
         printable(outcome.log) + "table\n" + printable(outcome.table).substr(0, 20000) + "\n";
}

Outcome outcome_of(int status, const std::string& directory, const std::string& own_file) {
  Outcome outcome{status, taken_logs(directory, own_file), drained_ring(), ""};
  if (status < 0 && outcome.ring.empty()) finding("a failure without a ring entry", hex(status));
  return outcome;
}

void expect_same(const char* what, const Outcome& serial, const Outcome& parallel) {
  if (serial == parallel) return;
  finding(std::string(what) + " differs between one worker and several",
          "ONE WORKER\n" + to_text(serial) + "SEVERAL\n" + to_text(parallel));
}

}  // namespace qxe::test
