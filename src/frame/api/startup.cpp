// What the loader runs: the engine and the task object exist before a client can call.
#include "frame/api/dbtask.h"
#include "parallel/smpengine.h"

namespace qxe {

namespace {

/// A failure here ends the load.
[[maybe_unused]] const bool started = [] {
  ENG = &CSmpEngine::Instance();
  MPTask = &CDBParallelTask::Instance();
  return true;
}();

}  // namespace

}  // namespace qxe
