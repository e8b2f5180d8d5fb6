// What a fuzz program sets before libFuzzer runs its target.
#include "fuzz/import_check.h"

extern "C" int LLVMFuzzerInitialize(int*, char***);

int LLVMFuzzerInitialize(int*, char***) {
  qxe::test::shares_in_turn = true;
  return 0;
}
