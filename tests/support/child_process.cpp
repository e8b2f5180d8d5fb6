#include "support/child_process.h"

#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

namespace {
bool is_child = false;
}

// The address sanitizer's search for leaks misses the threads that a child does not have.
extern "C" int __lsan_is_turned_off();  // NOLINT(bugprone-reserved-identifier): its name
extern "C" int __lsan_is_turned_off() {
  return is_child ? 1 : 0;
}

namespace qxe::test {

int exit_status_of_child(const std::function<int()>& body) {
#ifdef __SANITIZE_ADDRESS__
  // A thread that is just starting, as those of a child are, may hold a lock of the sanitizer's
  // allocator, for which the new process would wait forever.
  if (is_child) usleep(50'000);
#endif
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child == 0) {
    is_child = true;
    alarm(30);
    exit(body());  // NOLINT(concurrency-mt-unsafe): the engine's end belongs to it
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace qxe::test
