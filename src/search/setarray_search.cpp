// Searches of a set: the condition is decided on the value list, then the rows are scanned.
#include <string>

#include "parallel/sliced_task.h"
#include "search/scan.h"
#include "search/search_condition.h"
#include "search/text_search.h"
#include "storage/filters.h"
#include "storage/setarray.h"

namespace qxe {

namespace {

std::unique_ptr<TSetArray> empty_result(const TSetArray& source) {
  auto result = std::make_unique<TSetArray>(0, false);
  memcpy(result->FUserArea, source.FUserArea, sizeof result->FUserArea);
  return result;
}

// Ranges of value numbers.

template <class Array>
RangeTest ranges_of(const SearchCondition& condition, const Array& list, const char* v1,
                    const char* v2) {
  using Value = typename Family<Array>::Value;
  const auto view = view_of(list);
  BoundPosition first;
  BoundPosition second;
  Value value{};
  if (condition.reads_value1()) {
    memcpy(&value, v1, sizeof value);
    first = bound_position(Family<Array>::normalized(value), view);
  }
  if (condition.reads_value2()) {
    memcpy(&value, v2, sizeof value);
    second = bound_position(Family<Array>::normalized(value), view);
  }
  return number_ranges(condition, first, second, view.size);
}

template <>
RangeTest ranges_of(const SearchCondition& condition, const TStrArray& list, const char* v1,
                    const char* v2) {
  const auto view = view_of(list);
  const bool empty_value1 = *v1 == '\0';
  const BoundPosition first = bound_position(v1, view);
  BoundPosition second;
  if (condition.reads_value2()) {
    second = bound_position(v2, view);
  } else if (condition.code == QX_OPE_BEGINS && !empty_value1) {
    std::string beyond(v1);
    ++beyond.back();  // a last byte of 0xFF wraps to a terminator, and nothing begins so
    second = bound_position(beyond.c_str(), view);
  }
  return text_ranges(condition, first, second, view.size, empty_value1);
}

/// Whether a bound that the condition reads is NULL.
bool has_null_bound(const SearchCondition& condition, const TBaseArray& list, const char* v1,
                    const char* v2) {
  return with_family(list, [&]<class Array>(const Array&) {
    if constexpr (std::is_same_v<Array, TStrArray>) {
      return false;
    } else {
      const auto is_null = [](const char* address) {
        typename Family<Array>::Value value;
        memcpy(&value, address, sizeof value);
        return Family<Array>::is_null(Family<Array>::normalized(value));
      };
      return (condition.reads_value1() && is_null(v1)) || (condition.reads_value2() && is_null(v2));
    }
  });
}

/// The work of both forms of SearchByValue.
std::unique_ptr<TSetArray> _searchByValue(const char* layer, const TSetArray& source,
                                          const TFilter& filter, int ope, const char* v1,
                                          const char* v2, bool negate) {
  const TBaseArray& list = *filter.VL;
  const SearchCondition condition =
      normalized_condition(layer, ope, negate, list.GetDataType() == QX_DT_STRING);
  if (condition.strict && has_null_bound(condition, list, v1, v2)) return empty_result(source);
  if (source.FArraySize == 0) return empty_result(source);
  if (condition.tests_each_text()) {
    return search_texts(source, filter, text_condition(condition, v1));
  }
  const RangeTest test =
      with_family(list, [&](const auto& own) { return ranges_of(condition, own, v1, v2); });
  const TSortedSetArray* const sorted = source.GetSortedSet(&filter);
  if (sorted != nullptr && !sorted->tainted()) return sorted->SearchByValue(test);
  return MoveRecsForScan(source, filter.PVL->PIntAr(), test);
}

}  // namespace

std::unique_ptr<TSetArray> TSetArray::SearchByValue(TFilter* filter, int ope, const char* v1,
                                                    const char* v2, bool negate) const {
  return _searchByValue("SearchByValue", *this, *filter, ope, v1, v2, negate);
}

std::unique_ptr<TSetArray> TSetArray::MppSearchByValue(TFilter* filter, int ope, const char* v1,
                                                       const char* v2, bool negate) const {
  return _searchByValue("MppSearchByValue", *this, *filter, ope, v1, v2, negate);
}

// One of N values

namespace {

struct NValuesParams {
  const TBaseArray* list;
  const void* values;
  Slice slice;
  unsigned char* hits;  // several workers may store the same 1
};

void mark_values(const NValuesParams& params) {
  with_family(*params.list, [&]<class Array>(const Array& own) {
    const auto* const values = static_cast<const typename Family<Array>::Value*>(params.values);
    const auto list = view_of(own);
    for (long i = params.slice.begin; i < params.slice.end; ++i) {
      bool found = false;
      const int position = find_pos(Family<Array>::normalized(values[i]), list, &found);
      if (found) __atomic_store_n(params.hits + position, 1, __ATOMIC_RELAXED);
    }
  });
}

}  // namespace

int mpp_search_nvalues(void* block) {
  return run_task<NValuesParams>(block, [](NValuesParams& params) { mark_values(params); });
}

std::unique_ptr<TSetArray> TSetArray::SearchByNValues(TFilter* filter, int count,
                                                      const void* values) const {
  if (FArraySize == 0 || count < 1) return empty_result(*this);
  const int size = filter->VL->FArraySize;
  const Block<unsigned char> hits = make_cleared_block<unsigned char>(size);
  SlicedTask<NValuesParams> task(QX_MPP_SEARCH_NVALUES, count, texts_per_worker());
  task.run([&](Slice slice) { return NValuesParams{filter->VL, values, slice, hits.get()}; });
  return MoveRecsForScan(*this, filter->PVL->PIntAr(), TableTest{hits.get(), size});
}

}  // namespace qxe
