// The sorted sets of a real table, by positions of their set and their filter. All that files know
// of high-speed search but its flag stands here.
#include "persist/section_carrier.h"
#include "persist/section_check.h"
#include "tables/realtables.h"

namespace qxe {

namespace {

/// Calls `body(set position, filter position, sorted set)` in the order of the section.
template <class Body>
void for_each_sorted_set(const std::vector<std::unique_ptr<TSetArray>>& sets,
                         const std::vector<std::unique_ptr<TFilter>>& filters, const Body& body) {
  for (size_t s = 0; s < sets.size(); ++s) {
    for (size_t f = 0; f < filters.size(); ++f) {
      TSortedSetArray* const sorted = sets[s]->GetSortedSet(filters[f].get());
      if (sorted != nullptr) body(static_cast<int>(s), static_cast<int>(f), *sorted);
    }
  }
}

}  // namespace

void TRealTable::save_sorted_sets(SectionWriter& writer) {
  int count = 0;
  for_each_sorted_set(sets_, filters_, [&](int, int, TSortedSetArray&) { ++count; });
  write_field(writer, count);
  for_each_sorted_set(sets_, filters_, [&](int set, int filter, TSortedSetArray& sorted) {
    write_field(writer, set);
    write_field(writer, filter);
    sorted.SaveArray(writer);
  });
}

/// The rows are sorted anew, which costs as much as to check them. A mark of a set or filter that
/// is not in the section, as a section of one set has them, is dropped.
void TRealTable::load_sorted_sets(SectionReader& reader) {
  const int count = read_field<int>(reader);
  check_format(count >= 0);
  for (int i = 0; i < count; ++i) {
    const int set = read_field<int>(reader);
    const int filter = read_field<int>(reader);
    TIntArray rows;
    rows.LoadArray(reader);
    read_field<int>(reader);  // number of NULLs
    if (set < 0 || set >= set_count() || filter < 0 || filter >= GetNFilter()) continue;
    TSetArray& marked = *sets_[static_cast<size_t>(set)];
    check_format(rows.FArraySize == 0 || rows.FArraySize == marked.FArraySize);
    check_format(marked.GetSortedSet(filter_at(filter)) == nullptr);
    auto sorted = std::make_unique<TSortedSetArray>();
    sorted->initialize(&marked, filter_at(filter));
    TSortedSetArray& mark = *sorted.release();  // the set's from here on
    if (rows.FArraySize > 0) mark.Reclaim();
  }
}

}  // namespace qxe
