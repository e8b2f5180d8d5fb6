// Exported functions: column compilation for clients.
#include "frame/api/call_frame.h"
#include "search/k_way_compile.h"

using namespace qxe;  // NOLINT(google-build-using-namespace): the bodies of a boundary

int iCompileInt(int n, int k, int* data, int** pv, int** vl) {
  return guarded_call(__func__, {if_any(n, data), pv, vl},
                      [&] { return k_way_compile<TIntArray>(n, k, data, pv, vl); });
}

int iCompileFloat(int n, int k, double* data, int** pv, double** vl) {
  return guarded_call(__func__, {if_any(n, data), pv, vl},
                      [&] { return k_way_compile<TDoubleArray>(n, k, data, pv, vl); });
}

int iCompileString(int n, int k, char** data, int** pv, long** vl) {
  return guarded_call(__func__, {if_any(n, data), pv, vl}, [&] {
    const char** texts = nullptr;
    const int values = k_way_compile<TStrArray>(n, k, data, pv, &texts);
    if (values > 0) *vl = reinterpret_cast<long*>(texts);
    return values;
  });
}

int iCompileNumeric(int n, int k, Numeric* data, int** pv, Numeric** vl) {
  return guarded_call(__func__, {if_any(n, data), pv, vl},
                      [&] { return k_way_compile<TNumericArray>(n, k, data, pv, vl); });
}
