// New values of a filter: where they belong in its value list, and how the list and the row
// pointers make way for them.
#include <algorithm>
#include <limits>
#include <vector>

#include "search/compiler.h"
#include "storage/family.h"

namespace qxe {

namespace {

// Up to this many values, or this share of a list, grow the list in place; the pool merges lists of
// like size faster.
constexpr int kFewValues = 1000;
constexpr int kFewShare = 8;

/// Where ascending distinct values belong in a list.
struct Places {
  Block<int> numbers;        // of each value in the list that holds them all
  std::vector<int> missing;  // indices of the values that the list lacks so far

  int missing_count() const { return static_cast<int>(missing.size()); }
  /// Present entry before which missing value `m` belongs.
  int place(int m) const { return numbers[missing[static_cast<size_t>(m)]] - m; }
};

/// The first entry from `from` on that is not below `value`, looked for nearby first.
template <class List, class Value>
int first_not_below(const List& list, const Value& value, int from) {
  const auto below = [&](long i) {
    return List::FamilyOf::compare(list[static_cast<int>(i)], value) < 0;
  };
  long low = from;
  long high = from;
  for (long step = 1; high < list.size && below(high); step *= 2) {
    low = high + 1;
    high += step;
  }
  high = std::min<long>(high, list.size);
  while (low < high) {
    const long middle = low + (high - low) / 2;
    if (below(middle)) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return static_cast<int>(low);
}

template <class Array>
Places places_of(const Array& array, const typename Family<Array>::Value* values, int count) {
  const auto list = view_of(array);
  Places places{make_block<int>(count), {}};
  int place = 0;
  for (int i = 0; i < count; ++i) {
    place = first_not_below(list, values[i], place);
    places.numbers[i] = place + places.missing_count();
    const bool present = place < list.size && Family<Array>::equal(list[place], values[i]);
    if (!present) places.missing.push_back(i);
  }
  if (places.missing_count() > std::numeric_limits<int>::max() - list.size) {
    throw CQXException(QX_ERROR_ROW_SIZE);
  }
  return places;
}

/// For each entry of a list of `size` its number once the missing values are in it.
Block<int> moved_entries(const Places& places, int size) {
  Block<int> map = make_block<int>(size);
  int entry = 0;
  for (int m = 0; m <= places.missing_count(); ++m) {
    const int end = m < places.missing_count() ? places.place(m) : size;
    for (; entry < end; ++entry) map[entry] = entry + m;
  }
  return map;
}

/// Makes room for the missing values, whatever it takes.
template <class Array>
void reserve(Array& list, const typename Family<Array>::Value* values, const Places& places) {
  list.reserve(static_cast<long>(list.FArraySize) + places.missing_count());
  if constexpr (std::is_same_v<Array, TStrArray>) {
    long bytes = 0;
    for (const int i : places.missing) bytes += static_cast<long>(strlen(values[i])) + 1;
    list.reserve_pool(bytes);
  } else {
    (void)values;
  }
}

/// Moves the entries apart and puts the missing values between them.
template <class Array>
void insert(Array& list, const typename Family<Array>::Value* values, const Places& places) {
  int end = list.FArraySize;
  list.SetArraySize(end + places.missing_count());
  const auto spread = [&](auto* entries, auto&& entry_of) {
    for (int m = places.missing_count() - 1; m >= 0; --m) {
      const int place = places.place(m);
      std::copy_backward(entries + place, entries + end, entries + end + m + 1);
      entries[place + m] = entry_of(values[places.missing[static_cast<size_t>(m)]]);
      end = place;
    }
  };
  if constexpr (std::is_same_v<Array, TStrArray>) {
    spread(list.offsets(), [&](const char* text) { return list.add_text(text); });
  } else {
    spread(list.values(), [](const auto& value) { return value; });
  }
}

/// The list grows in place. Values above all others, as serial numbers and times often are, leave
/// the rows alone.
template <class Array>
Block<int> grow(TIntArray& pv, Array& list, const typename Family<Array>::Value* values, int count,
                bool mpp) {
  Places places = places_of(list, values, count);
  if (places.missing.empty()) return std::move(places.numbers);
  const int size = list.FArraySize;
  Block<int> map = places.place(0) < size ? moved_entries(places, size) : nullptr;
  reserve(list, values, places);
  // Nothing fails from here on.
  insert(list, values, places);
  if (map != nullptr) (mpp ? DoMppRenumber : DoRenumber)(pv, map.get(), size);
  return std::move(places.numbers);
}

}  // namespace

Block<int> TFilter::numbers_of(Block<char> values, int count, bool mpp) {
  if (!FVLBorrowed && count <= std::max(VL->FArraySize / kFewShare, kFewValues)) {
    const int size = VL->FArraySize;
    Block<int> numbers = with_family(*VL, [&]<class Array>(Array& list) {
      using Value = typename Family<Array>::Value;
      return grow(*PVL, list, reinterpret_cast<const Value*>(values.get()), count, mpp);
    });
    if (VL->FArraySize != size) ++list_version_;
    return numbers;
  }
  const auto news = make_value_array(VL->GetDataType(), count, std::move(values));
  MergedLists merged = (mpp ? MppMergeLists : MergeLists)(*VL, *news);
  if (merged.list == nullptr) {
    Block<int> same = make_block<int>(count);
    for (int i = 0; i < count; ++i) same[i] = i;
    return same;
  }
  (mpp ? DoMppRenumber : DoRenumber)(*PVL, merged.map1.get(), VL->FArraySize);
  adopt_values(std::move(merged.list));
  return std::move(merged.map2);
}

}  // namespace qxe
