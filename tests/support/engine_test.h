// The fixture of every test that calls the engine, and what a failed call left behind.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace qxe::test {

/// An entry of the engine's ring of failures.
struct RingEntry {
  int time;  // processor time in milliseconds
  std::string call;
  int code;
  std::string message;
};

/// Takes all entries out of the ring, oldest first.
std::vector<RingEntry> drain_ring();
std::string to_text(const std::vector<RingEntry>& entries);
/// 0xe000006d rather than a large negative number.
std::string hex(int code);

/// Starts each test with no table, an empty ring and the settings of a fresh engine, in an empty
/// working directory; prints the ring when the test has failed. All this stands in the constructor,
/// so that fixtures derived from it may have tables as members.
class EngineTest : public testing::Test {
 public:
  EngineTest(const EngineTest&) = delete;
  EngineTest& operator=(const EngineTest&) = delete;
  ~EngineTest() override;

 protected:
  EngineTest();

  /// The test's working directory.
  const TempDir& directory() const { return directory_; }

  static std::vector<RingEntry> ring() { return drain_ring(); }

  /// `status` must be `code`, and an entry of the ring must have the code and begin with `text`.
  /// Takes all entries out of the ring. Without a text only the status counts.
  static void expect_failure(int status, int code, const std::string& text = "",
                             const char* file = __builtin_FILE(), int line = __builtin_LINE());
  /// For calls that return another code than they log.
  static void expect_failure_logged_as(int status, int code, int logged, const std::string& text,
                                       const char* file = __builtin_FILE(),
                                       int line = __builtin_LINE());

 private:
  TempDir directory_;
  WorkingDirectory working_directory_;
};

}  // namespace qxe::test
