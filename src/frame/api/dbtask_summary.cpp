// The task object's summaries.
#include "frame/api/dbtask.h"
#include "frame/api/serial_layer.h"
#include "summary/noncube_sum.h"

namespace qxe {

int CDBParallelTask::NonCubeSum(int table, const NonCubeRequest& request) {
  static constexpr LayerCall kCall{.layer = "RQXNonCubeSum"};
  int status = 0;
  TBaseTable* const source = admitted_table(kCall, table, &status);
  if (source == nullptr) return status;
  status = guarded("NonCubeSum", [&] { return sum_to_table(*source, request); });
  if (status < 0) return report(kCall.layer, status, "Failed to create NonCubeSum");
  g_TFSaved = false;
  return status;
}

}  // namespace qxe
