// Faults on purpose. A test program that links qxe_test_faults has its allocations, file calls and
// thread starts pass through here; everything in the program is reached, inside the engine and out.
#pragma once

#include <string>

namespace qxe::test {

enum class FaultKind {
  kAllocation,  // no memory: malloc, realloc, operator new, and mmap without a file
  kFileCall,    // any call on a file or directory
  kThread,      // no further thread
  kPart         // a read or write past the buffer moves a part alone, which is no failure
};

/// `after` calls of the kind pass, the next one fails, and with `persistent` all later ones too.
struct Fault {
  FaultKind kind;
  long after;
  bool persistent;
};

std::string to_text(const Fault& fault);

/// A fault in force while this lives. One at a time; calls of all threads count.
class ArmedFault {
 public:
  explicit ArmedFault(const Fault& fault);
  ~ArmedFault();
  ArmedFault(const ArmedFault&) = delete;
  ArmedFault& operator=(const ArmedFault&) = delete;

  /// Whether a call has failed so far.
  bool fired() const;
};

}  // namespace qxe::test
