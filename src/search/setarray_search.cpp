// Searches of a set: the condition is decided on the value list, then the rows are scanned.
#include <algorithm>
#include <string>

#include "parallel/sliced_task.h"
#include "search/compiler.h"
#include "search/scan.h"
#include "search/search_condition.h"
#include "storage/setarray.h"

namespace qxe {

namespace {

/// Whether a set of `rows` rows is so small that deciding the condition for the whole value list
/// would cost more than finding the distinct value numbers of its rows.
bool is_narrow(int rows, int listSize) {
  return rows < (listSize >> 3);
}

std::unique_ptr<TSetArray> empty_result(const TSetArray& source) {
  auto result = std::make_unique<TSetArray>(0, false);
  memcpy(result->FUserArea, source.FUserArea, sizeof result->FUserArea);
  return result;
}

// Each value tested by itself: contains, ends with.

/// Tests texts of a list, or those that `numbers` names.
struct TextTest {
  ValueView<TStrArray> list;
  const int* numbers;  // null on the wide path
  const char* pattern;
  int code;
  bool negate;
  unsigned char* hits;

  void run(Slice slice) const {
    if (code != QX_OPE_CONTAINS || numbers != nullptr || *pattern == '\0') return run_each(slice);
    for (long begin = slice.begin; begin < slice.end; begin += kGroup) {
      const Slice group{begin, std::min(begin + kGroup, slice.end)};
      if (lie_in_order(group)) {
        run_as_one_text(group);
      } else {
        run_each(group);
      }
    }
  }

 private:
  static constexpr long kGroup = 512;  // texts that are searched as one

  void run_each(Slice slice) const {
    for (long i = slice.begin; i < slice.end; ++i) test_entry(i);
  }

  void test_entry(long i) const {
    const int entry = numbers == nullptr ? static_cast<int>(i) : numbers[i];
    hits[i] = text_matches(code, list[entry], pattern) != negate;
  }

  /// Whether each text of a group begins behind the one before it. So does every list that was not
  /// edited.
  bool lie_in_order(Slice group) const {
    bool in_order = true;
    for (long i = group.begin + 1; i < group.end; ++i) {
      in_order &= list.offsets[i - 1] < list.offsets[i];
    }
    return in_order;
  }

  /// Looks the pattern's bytes up in the pool and tests the texts in which they stand.
  void run_as_one_text(Slice group) const {
    memset(hits + group.begin, negate, static_cast<size_t>(group.size()));
    const size_t size = strlen(pattern);
    const char* const last = list[static_cast<int>(group.end) - 1];
    const char* const end = last + strlen(last);
    const long* const offsets_end = list.offsets + group.end;
    for (const long* next = list.offsets + group.begin; next < offsets_end;) {
      const char* const place = scan_kernels().find_bytes(list.pool + *next, end, pattern, size);
      if (place == nullptr) return;
      next = std::upper_bound(next, offsets_end, place - list.pool);
      test_entry(next - 1 - list.offsets);
    }
  }
};

struct TextTestParams {
  TextTest test;
  Slice slice;
};

/// A text test costs far more than a row of a scan, so fewer of them are worth a worker.
long texts_per_worker() {
  return (ENG->rows_per_worker() + 15) / 16;
}

void test_texts(const TextTest& test, int n) {
  SlicedTask<TextTestParams> task(QX_MPP_SEARCH_HELPER, n, texts_per_worker());
  task.run([&](Slice slice) { return TextTestParams{test, slice}; });
}

std::unique_ptr<TSetArray> search_wide(const TSetArray& source, const TFilter& filter,
                                       TextTest test) {
  const int n = test.list.size;
  Block<unsigned char> hits = make_block<unsigned char>(n);
  test.hits = hits.get();
  test_texts(test, n);
  return MoveRecsForScan(source, filter.PVL->PIntAr(), TableTest{hits.get(), n});
}

std::unique_ptr<TSetArray> search_narrow(const TSetArray& source, const TFilter& filter,
                                         TextTest test) {
  const int n = source.FArraySize;
  const int* const rows = source.PIntAr();
  const int* const pv = filter.PVL->PIntAr();
  Block<int> numbers = make_block<int>(n);
  for (int i = 0; i < n; ++i) numbers[i] = pv[rows[i]];
  const CompiledColumn local = MppCompile(n, QX_DT_INTEGER, sizeof(int), numbers.get());
  Block<unsigned char> hits = make_block<unsigned char>(local.unique);
  test.numbers = reinterpret_cast<const int*>(local.value_list.get());
  test.hits = hits.get();
  test_texts(test, local.unique);
  return MoveRecsForScanScope(source, local.row_pointers.get(), hits.get());
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
    const TextTest test{view_of(static_cast<const TStrArray&>(list)),
                        nullptr,
                        v1,
                        condition.code,
                        condition.negate,
                        nullptr};
    return is_narrow(source.FArraySize, list.FArraySize) ? search_narrow(source, filter, test)
                                                         : search_wide(source, filter, test);
  }
  const RangeTest test =
      with_family(list, [&](const auto& own) { return ranges_of(condition, own, v1, v2); });
  return MoveRecsForScan(source, filter.PVL->PIntAr(), test);
}

}  // namespace

int mpp_search_helper(void* block) {
  return run_task<TextTestParams>(block,
                                  [](TextTestParams& params) { params.test.run(params.slice); });
}

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
