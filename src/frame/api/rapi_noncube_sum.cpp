// Exported functions: summaries in one call.

#include "frame/api/call_frame.h"
#include "frame/api/dbtask.h"
#include "summary/noncube_sum.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int RQXNonCubeSum(int table, int set, int nDim, int* dims, int nMsr, int* msrs, int* flags,
                  int* digits) {
  return guarded_call(
      __func__, {if_any(nDim, dims), if_any(nMsr, msrs), if_any(nMsr, flags), if_any(nMsr, digits)},
      [&] {
        return DBTASK()->NonCubeSum(table, {set, nDim, dims, nMsr, msrs, flags, digits});
      });
}
