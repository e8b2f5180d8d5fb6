#include "parallel/mpp_memory.h"

#include <string.h>

#include <algorithm>
#include <numeric>

#include "search/compiler_steps.h"

namespace qxe {

namespace {

// Below this the calling thread is done before a worker would be awake.
constexpr unsigned long kSerialBytes = 0x100000;

struct FillParams {
  char* to;
  int value;
  long begin;  // bytes
  long end;
};

}  // namespace

/// Shared with the transfers between memory and files.
int mpp_memcpy(void* block) {
  return run_pool_step(block);
}

int mpp_memset(void* block) {
  return run_task<FillParams>(block, [](FillParams& fill) {
    memset(fill.to + fill.begin, fill.value, static_cast<size_t>(fill.end - fill.begin));
  });
}

void MppMemcpy(void* to, const void* from, int unit, unsigned long count, int threads) {
  const long elements = static_cast<long>(count);
  const int workers = ENG->n_threads_for_elements(
      elements, std::max((elements + threads - 1) / std::max(threads, 1), 1L));
  run_step(QX_MPP_MEMCPY, workers, [&](int worker) {
    const Slice slice = even_slice(elements, workers, worker);
    memcpy(static_cast<char*>(to) + slice.begin * unit,
           static_cast<const char*>(from) + slice.begin * unit,
           static_cast<size_t>(slice.size() * unit));
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

void MppFillUp(int* to, int first, long count) {
  const bool small = static_cast<unsigned long>(count) * sizeof(int) < kSerialBytes;
  const int workers = small ? 1 : ENG->run_threads();
  run_step(QX_MPP_MEMCPY, workers, [&](int worker) {
    const Slice slice = even_slice(count, workers, worker);
    std::iota(to + slice.begin, to + slice.end, first + static_cast<int>(slice.begin));
  });
}

}  // namespace qxe
