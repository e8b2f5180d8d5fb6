#include "persist/section_check.h"

#include <string.h>

#include "persist/section_carrier.h"
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

void check_value_list(const TBaseArray& values) {
  check_format(values.FArraySize > 0);
  with_family(values, []<class Array>(const Array& own) {
    const auto view = view_of(own);
    check_format(Family<Array>::is_null(view[0]));
    for (int i = 1; i < view.size; ++i) {
      check_format(Family<Array>::compare(view[i - 1], view[i]) < 0);
    }
  });
}

namespace {

/// Whether all of `count` numbers lie in `first` to `first + size - 1`. No branch: the loop is one
/// of vectors.
bool all_within(const int* numbers, int count, int first, int size) {
  unsigned outside = 0;
  const auto low = static_cast<unsigned>(first);
  const auto limit = static_cast<unsigned>(size);
  for (int i = 0; i < count; ++i) {
    outside |= static_cast<unsigned>(static_cast<unsigned>(numbers[i]) - low >= limit);
  }
  return outside == 0;
}

}  // namespace

void check_row_pointers(const TIntArray& numbers, int values) {
  const int* const own = numbers.PIntAr();
  check_format(own[0] == 0 && all_within(own, numbers.FArraySize, 0, values));
}

void check_root_set(const TSetArray& rows) {
  check_format(rows.is_counted_up());
}

void check_set(const TSetArray& rows, int total) {
  check_format(all_within(rows.PIntAr(), rows.FArraySize, 1, total));
}

}  // namespace qxe
