// How much memory a step needs. A program that links qxe_test_memory_meter has the engine's blocks
// and everything of operator new counted, by the bytes that were asked for.
#pragma once

namespace qxe::test {

/// Starts a new peak when it is made.
class MemoryMeter {
 public:
  MemoryMeter();

  /// Bytes in use now, and at most, beyond those of the beginning.
  long growth() const;
  long peak() const;

 private:
  long before_;
};

}  // namespace qxe::test
