#include "search/compiler_values.h"

#include <math.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "search/compiler_int.h"
#include "search/compiler_steps.h"
#include "search/value_dictionary.h"
#include "storage/strings.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

// Share of distinct values among a worker's rows from which on sorting the rows themselves costs
// less than looking each one up first.
constexpr double kWorthSorting = 0.25;
// Columns this short are sorted as they are.
constexpr long kShortColumn = 1024;

/// Distinct values that the column is likely to have, judged by how often those of a sample repeat:
/// many single ones against few pairs speak of many unseen ones.
template <class Array>
double estimated_distinct(const typename Family<Array>::Value* data, long count) {
  constexpr long kSample = 32768;
  const long taken = std::min(count, kSample);
  ValueDictionary<Array> dictionary;
  std::vector<int> seen(static_cast<size_t>(taken), 0);
  const double stride = static_cast<double>(count) / static_cast<double>(taken);
  std::vector<typename Family<Array>::Value> sample;
  for (long i = 0; i < taken; ++i) {
    sample.push_back(data[static_cast<long>(static_cast<double>(i) * stride)]);
  }
  std::vector<int> codes(sample.size());
  dictionary.codes_of(sample.data(), taken, codes.data());
  for (const int code : codes) ++seen[static_cast<size_t>(code)];
  const auto single = static_cast<double>(std::count(seen.begin(), seen.end(), 1));
  const auto pairs = static_cast<double>(std::count(seen.begin(), seen.end(), 2));
  if (pairs == 0) {
    return single > 0 ? std::numeric_limits<double>::infinity() : dictionary.size();
  }
  return dictionary.size() + single * single / (2 * pairs);
}

/// Whether so many rows repeat that a dictionary pays, when each worker has `rows` of them.
template <class Array>
bool dictionary_pays(const typename Family<Array>::Value* data, long count, int workers) {
  if (count <= kShortColumn) return false;
  const double rows = static_cast<double>(count) / workers;
  const double distinct = estimated_distinct<Array>(data, count);
  const double met = distinct * -expm1(-rows / distinct);  // by drawing that often
  return met < kWorthSorting * rows;
}

/// The value list of `sources` and, with `null_ahead`, NULL.
template <class Array>
ValueList<Array> list_of(std::vector<ValueSource<Array>> sources, bool null_ahead, int workers) {
  const typename Family<Array>::Value null = Family<Array>::null();
  int null_number = 0;
  if (null_ahead) sources.push_back({&null, 1, &null_number});
  return sort_distinct<Array>(sources, workers);
}

/// Each worker makes its rows distinct, then the distinct values are sorted.
template <class Array>
ValueList<Array> compile_by_dictionary(const typename Family<Array>::Value* data, long count,
                                       int* numbers, bool null_ahead, int workers) {
  std::vector<ValueDictionary<Array>> dictionaries(static_cast<size_t>(workers));
  run_compile_step(workers, [&](int worker) {
    const Slice rows = even_slice(count, workers, worker);
    dictionaries[static_cast<size_t>(worker)].codes_of(data + rows.begin, rows.size(),
                                                       numbers + rows.begin);
  });
  std::vector<Block<int>> ranks;
  std::vector<ValueSource<Array>> sources;
  for (const auto& dictionary : dictionaries) {
    ranks.push_back(make_block<int>(dictionary.size()));
    sources.push_back(dictionary.source(ranks.back().get()));
  }
  ValueList<Array> list = list_of<Array>(std::move(sources), null_ahead, workers);
  run_compile_step(workers, [&](int worker) {
    const Slice rows = even_slice(count, workers, worker);
    const int* const rank = ranks[static_cast<size_t>(worker)].get();
    for (long i = rows.begin; i < rows.end; ++i) numbers[i] = rank[numbers[i]];
  });
  return list;
}

/// Texts lose their trailing blanks, in the caller's buffers, when the setting says so.
void cut_trailing_blanks(const char* const* texts, long count, int workers) {
  if (TTableCollection::m_nCutLastSpace == 0) return;
  run_compile_step(workers, [&](int worker) {
    const Slice rows = even_slice(count, workers, worker);
    for (long i = rows.begin; i < rows.end; ++i) {
      if (texts[i] != nullptr) DelLastSpc(const_cast<char*>(texts[i]));
    }
  });
}

}  // namespace

template <class Array>
ValueList<Array> compile_values(const typename Family<Array>::Value* data, long count, int* numbers,
                                bool null_ahead, int workers,
                                [[maybe_unused]] const _RawIntArrayRangeInfo* range) {
  if constexpr (std::is_same_v<Array, TIntArray>) {
    const auto known = range != nullptr ? *range : int_range(data, count, workers);
    if (addressable(count, known)) {
      return compile_by_address(data, count, numbers, known, null_ahead, workers);
    }
  }
  if constexpr (std::is_same_v<Array, TStrArray>) cut_trailing_blanks(data, count, workers);
  if (dictionary_pays<Array>(data, count, workers)) {
    return compile_by_dictionary<Array>(data, count, numbers, null_ahead, workers);
  }
  return list_of<Array>({{data, count, numbers}}, null_ahead, workers);
}

template ValueList<TIntArray> compile_values<TIntArray>(const int*, long, int*, bool, int,
                                                        const _RawIntArrayRangeInfo*);
template ValueList<TDoubleArray> compile_values<TDoubleArray>(const double*, long, int*, bool, int,
                                                              const _RawIntArrayRangeInfo*);
template ValueList<TStrArray> compile_values<TStrArray>(const char* const*, long, int*, bool, int,
                                                        const _RawIntArrayRangeInfo*);
template ValueList<TNumericArray> compile_values<TNumericArray>(const Numeric*, long, int*, bool,
                                                                int, const _RawIntArrayRangeInfo*);

}  // namespace qxe
