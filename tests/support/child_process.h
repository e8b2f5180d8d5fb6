// Child processes made by fork(), for what must not happen in the test's own process.
#pragma once

#include <functional>

namespace qxe::test {

/// Exit status of a child that runs `body` and ends with what it returns, by exit() like any
/// program; -1 for one that was killed, for instance because it had not ended after half a minute.
int exit_status_of_child(const std::function<int()>& body);

}  // namespace qxe::test
