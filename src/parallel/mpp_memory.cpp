#include "parallel/mpp_memory.h"

#include <string.h>

#include "parallel/sliced_task.h"

namespace qxe {

namespace {

// Below this the calling thread is done before a worker would be awake.
constexpr unsigned long kSerialBytes = 0x100000;

struct CopyParams {
  char* to;
  const char* from;
  long begin;  // bytes
  long end;
};

struct FillParams {
  char* to;
  int value;
  long begin;  // bytes
  long end;
};

}  // namespace

int mpp_memcpy(void* block) {
  return run_task<CopyParams>(block, [](CopyParams& copy) {
    memcpy(copy.to + copy.begin, copy.from + copy.begin,
           static_cast<size_t>(copy.end - copy.begin));
  });
}

int mpp_memset(void* block) {
  return run_task<FillParams>(block, [](FillParams& fill) {
    memset(fill.to + fill.begin, fill.value, static_cast<size_t>(fill.end - fill.begin));
  });
}

void MppMemcpy(void* to, const void* from, int unit, unsigned long count, int threads) {
  const long elements = static_cast<long>(count);
  const long per_worker = (elements + threads - 1) / (threads > 0 ? threads : 1);
  SlicedTask<CopyParams> task(QX_MPP_MEMCPY, elements, per_worker > 0 ? per_worker : 1);
  task.run([&](Slice slice) {
    return CopyParams{static_cast<char*>(to), static_cast<const char*>(from), slice.begin * unit,
                      slice.end * unit};
  });
}

void MppMemCpy(void* to, const void* from, unsigned long bytes) {
  if (ENG->run_threads() == 1 || bytes < kSerialBytes) {
    memcpy(to, from, bytes);
  } else {
    MppMemcpy(to, from, 1, bytes, ENG->run_threads());
  }
}

void MppMemSet(void* to, int value, unsigned long bytes) {
  if (ENG->run_threads() == 1 || bytes < kSerialBytes) {
    memset(to, value, bytes);
    return;
  }
  SlicedTask<FillParams> task(QX_MPP_MEMSET, static_cast<long>(bytes));
  task.run([&](Slice slice) {
    return FillParams{static_cast<char*>(to), value, slice.begin, slice.end};
  });
}

}  // namespace qxe
