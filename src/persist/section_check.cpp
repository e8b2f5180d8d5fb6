#include "persist/section_check.h"

#include <string.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "persist/section_carrier.h"
#include "search/compiler_steps.h"
#include "storage/family.h"
#include "storage/filters.h"
#include "storage/setarray.h"
#include "storage/strings.h"

namespace qxe {

void read_name(SectionReader& reader, char* name) {
  constexpr size_t kNameSize = TFilter::kNameSize;
  reader.read(name, 1, kNameSize);
  check_format(memchr(name, 0, kNameSize) != nullptr);
}

void write_name(SectionWriter& writer, const char* name) {
  char field[TFilter::kNameSize] = "";  // zeros behind the terminator
  qxe_strlcpy(field, name, sizeof field);
  writer.write(field, 1, sizeof field);
}

namespace {

/// Sum of `body(slice)` over all of `elements`, shared by the workers.
template <class Body>
long sum_of_slices(long elements, const Body& body) {
  const int workers = compile_workers(elements, true);
  std::vector<long> sums(static_cast<size_t>(workers), 0);
  run_compile_step(workers, [&](int worker) {
    sums[static_cast<size_t>(worker)] = body(even_slice(elements, workers, worker));
  });
  return std::accumulate(sums.begin(), sums.end(), 0L);
}

/// Values of the slice that are not above the one in front of them. No branch in the loop.
template <class Array>
long count_misfits(const ValueView<Array>& values, Slice slice) {
  int misfits = 0;
  const auto end = static_cast<int>(slice.end);
  for (auto i = static_cast<int>(std::max(slice.begin, 1L)); i < end; ++i) {
    misfits += static_cast<int>(Family<Array>::compare(values[i - 1], values[i]) >= 0);
  }
  return misfits;
}

}  // namespace

void check_value_list(const TBaseArray& list, bool null_first) {
  check_format(list.FArraySize > 0);
  with_family(list, [=]<class Array>(const Array& own) {
    const auto values = view_of(own);
    check_format(!null_first || Family<Array>::is_null(values[0]));
    check_format(
        sum_of_slices(values.size, [&](Slice slice) { return count_misfits(values, slice); }) == 0);
  });
}

namespace {

/// Texts of the slice that do not begin behind the one in front of them and behind a terminator.
long count_stray_texts(const TStrArray& texts, Slice slice) {
  const long* const offsets = texts.offsets();
  const char* const pool = texts.pool();
  for (long i = std::max(slice.begin, 1L); i < slice.end; ++i) {
    const bool ascends = offsets[i] > offsets[i - 1] && offsets[i] < texts.pool_used();
    if (!ascends || pool[offsets[i] - 1] != '\0') return 1;
  }
  return 0;
}

}  // namespace

bool is_swept(const TStrArray& texts) {
  const long used = texts.pool_used();
  if (texts.FArraySize == 0) return used == 0;
  if (texts.offsets()[0] != 0 || used == 0 || texts.pool()[used - 1] != '\0') return false;
  const long stray =
      sum_of_slices(texts.FArraySize, [&](Slice slice) { return count_stray_texts(texts, slice); });
  if (stray != 0) return false;
  return sum_of_slices(used, [&](Slice slice) {
           return std::count(texts.pool() + slice.begin, texts.pool() + slice.end, '\0');
         }) == texts.FArraySize;
}

void check_texts(const TStrArray& texts) {
  const long used = texts.pool_used();
  check_format(used > 0 ? texts.pool()[used - 1] == '\0' : texts.FArraySize == 0);
  long total = 0;
  for (int i = 0; i < texts.FArraySize; ++i) {
    const long offset = texts.offsets()[i];
    check_format(offset >= 0 && offset < used);
    total += static_cast<long>(strlen(texts.pool() + offset)) + 1;
    check_format(total <= used);
  }
}

void check_root_set(const TSetArray& rows) {
  check_format(rows.is_counted_up());
}

}  // namespace qxe
