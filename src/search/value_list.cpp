#include "search/value_list.h"

#include <vector>

#include "search/compiler_steps.h"

namespace qxe {

namespace {

// How far ahead a text is asked for; texts of a sorted list lie anywhere.
constexpr long kAhead = 16;

/// Calls `body(i, text)` for the texts of a slice, each on the way to the cache before its turn.
template <class Body>
void for_each_text(const char* const* texts, Slice slice, Body&& body) {
  for (long i = slice.begin; i < slice.end; ++i) {
    if (i + kAhead < slice.end) __builtin_prefetch(texts[i + kAhead]);
    body(i, texts[i]);
  }
}

/// Lengths first, so that each worker knows where in the pool its texts begin.
std::unique_ptr<TBaseArray> make_text_array(int count, Block<const char*> texts, int workers) {
  Block<long> offsets = make_block<long>(count);
  std::vector<long> sizes(static_cast<size_t>(workers), 0);
  run_compile_step(workers, [&](int worker) {
    long used = 0;
    for_each_text(texts.get(), even_slice(count, workers, worker), [&](long i, const char* text) {
      offsets[i] = used;
      used += static_cast<long>(strlen(text)) + 1;
    });
    sizes[static_cast<size_t>(worker)] = used;
  });
  long pool_size = 0;
  for (long& size : sizes) pool_size += std::exchange(size, pool_size);
  Block<char> pool = make_block<char>(pool_size);
  run_compile_step(workers, [&](int worker) {
    const Slice slice = even_slice(count, workers, worker);
    const long begin = sizes[static_cast<size_t>(worker)];
    const size_t next = static_cast<size_t>(worker) + 1;
    const long end = next < sizes.size() ? sizes[next] : pool_size;
    for_each_text(texts.get(), slice, [&](long i, const char* text) {
      offsets[i] += begin;
      const long text_end = i + 1 < slice.end ? offsets[i + 1] + begin : end;
      memcpy(pool.get() + offsets[i], text, static_cast<size_t>(text_end - offsets[i]));
    });
  });
  return std::make_unique<TStrArray>(count, std::move(offsets), std::move(pool), pool_size);
}

}  // namespace

std::unique_ptr<TBaseArray> mpp_make_value_array(int type, int count, Block<char> values) {
  const int workers = compile_workers(count, true);
  if (type != QX_DT_STRING || workers == 1) {
    return make_value_array(type, count, std::move(values));
  }
  return make_text_array(
      count, Block<const char*>(reinterpret_cast<const char**>(values.release())), workers);
}

}  // namespace qxe
