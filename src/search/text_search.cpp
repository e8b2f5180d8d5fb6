#include "search/text_search.h"

#include <algorithm>
#include <string>

#include "parallel/sliced_task.h"
#include "search/compiler.h"
#include "search/scan.h"
#include "search/search_condition.h"
#include "storage/family.h"
#include "storage/filters.h"
#include "storage/setarray.h"

namespace qxe {

namespace {

/// Whether a set of `rows` rows is so small that deciding the condition for the whole value list
/// would cost more than finding the distinct value numbers of its rows.
bool is_narrow(int rows, int listSize) {
  return rows < (listSize >> 3);
}

/// Tests texts of a list, or those that `numbers` names.
struct TextTest {
  ValueView<TStrArray> list;
  TextCondition condition;
  const int* numbers = nullptr;  // null on the wide path
  unsigned char* hits = nullptr;

  void run(Slice slice) const {
    if (numbers != nullptr || *condition.piece == '\0') return run_each(slice);
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
    hits[i] = condition.matches(list[entry], condition.pattern) != condition.negate;
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

  /// Looks the piece up in the pool and tests the texts in which it stands.
  void run_as_one_text(Slice group) const {
    memset(hits + group.begin, condition.negate, static_cast<size_t>(group.size()));
    const size_t size = strlen(condition.piece);
    const char* const last = list[static_cast<int>(group.end) - 1];
    const char* const end = last + strlen(last);
    const long* const offsets_end = list.offsets + group.end;
    for (const long* next = list.offsets + group.begin; next < offsets_end;) {
      const char* const place =
          scan_kernels().find_bytes(list.pool + *next, end, condition.piece, size);
      if (place == nullptr) return;
      next = std::upper_bound(next, offsets_end, place - list.pool);
      test_entry(next - 1 - list.offsets);
    }
  }
};

struct TextTestParams {
  TextTest test;
  Slice slice{};
};

void test_texts(const TextTest& test, ValueRange entries) {
  const long first = entries.first;
  SlicedTask<TextTestParams> task(QX_MPP_SEARCH_HELPER, entries.end - first, texts_per_worker());
  task.run([&](Slice slice) {
    return TextTestParams{test, {first + slice.begin, first + slice.end}};
  });
}

std::unique_ptr<TSetArray> search_wide(const TSetArray& source, const TFilter& filter,
                                       TextTest test) {
  const int n = test.list.size;
  Block<unsigned char> hits = make_block<unsigned char>(n);
  test.hits = hits.get();
  ValueRange tested{0, n};
  if (*test.condition.prefix != '\0') {
    tested = with_prefix(test.list, test.condition.prefix);
    memset(hits.get(), test.condition.negate, static_cast<size_t>(n));
  }
  test_texts(test, tested);
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
  test_texts(test, {0, local.unique});
  return MoveRecsForScanScope(source, local.row_pointers.get(), hits.get());
}

}  // namespace

ValueRange with_prefix(const ValueView<TStrArray>& list, const char* prefix) {
  std::string beyond(prefix);
  while (!beyond.empty() && beyond.back() == '\xff') beyond.pop_back();
  if (!beyond.empty()) ++beyond.back();
  return {bound_position(prefix, list).lower(),
          beyond.empty() ? list.size : bound_position(beyond.c_str(), list).lower()};
}

long texts_per_worker() {
  return (ENG->rows_per_worker() + 15) / 16;
}

int mpp_search_helper(void* block) {
  return run_task<TextTestParams>(block,
                                  [](TextTestParams& params) { params.test.run(params.slice); });
}

std::unique_ptr<TSetArray> search_texts(const TSetArray& source, const TFilter& filter,
                                        const TextCondition& condition) {
  const auto& list = static_cast<const TStrArray&>(*filter.VL);
  const TextTest test{view_of(list), condition};
  return is_narrow(source.FArraySize, list.FArraySize) ? search_narrow(source, filter, test)
                                                       : search_wide(source, filter, test);
}

}  // namespace qxe
