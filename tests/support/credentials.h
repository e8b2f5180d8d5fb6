// The rights of another user for part of a test.
#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <stdexcept>

namespace qxe::test {

/// Takes the rights of root away while it lives: root may enter every directory and read every
/// file. Other users stay who they are.
class WithoutRoot {
 public:
  explicit WithoutRoot(uid_t user = 65534) : before_(geteuid()) {
    if (before_ == 0 && seteuid(user) != 0) throw std::runtime_error("seteuid");
  }
  ~WithoutRoot() {
    if (before_ == 0 && seteuid(before_) != 0) abort();
  }
  WithoutRoot(const WithoutRoot&) = delete;
  WithoutRoot& operator=(const WithoutRoot&) = delete;

 private:
  uid_t before_;
};

}  // namespace qxe::test
