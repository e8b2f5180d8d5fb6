// Accommodation: the value lists of two columns become one, and the row pointers follow, so that
// from then on equal values have equal numbers in both.
#include "search/compiler.h"
#include "search/compiler_steps.h"
#include "search/merge_item.h"
#include "search/value_list.h"

namespace qxe {

namespace {

void renumber(int* numbers, const int* map, Slice slice) {
  for (long i = slice.begin; i < slice.end; ++i) numbers[i] = map[numbers[i]];
}

}  // namespace

int mpp_merge_list(void* block) {
  return run_pool_step(block);
}

int mpp_renumber(void* block) {
  return run_pool_step(block);
}

namespace {

/// A map ascends strictly, so the last entry tells whether it changes anything.
bool changes(const int* map, int size) {
  return map[size - 1] != size - 1;
}

void check_lists(const TBaseArray& vl1, const TBaseArray& vl2) {
  if (vl1.GetDataType() != vl2.GetDataType()) {
    throw CQXException(report("AccommodationMain", QX_ERROR_MERGE_TYPE, "Illegal data type"));
  }
  if (vl1.FArraySize < 1 || vl2.FArraySize < 1) {
    throw CQXException(
        report("DoMppRenumber", QX_ERROR_PARAMETER, "Invalid Parameter : pAggrSize"));
  }
}

MergedLists merge_lists(const TBaseArray& vl1, const TBaseArray& vl2, bool mpp) {
  check_lists(vl1, vl2);
  return with_family(vl1, [&]<class Array>(const Array& first) {
    const int entries = std::max(vl1.FArraySize, vl2.FArraySize);
    ListMerge<Array> merge(first, static_cast<const Array&>(vl2), compile_workers(entries, mpp));
    MergedLists result;
    if (merge.same()) return result;
    const auto make_values = mpp ? mpp_make_value_array : make_value_array;
    result.list = make_values(vl1.GetDataType(), merge.size(), as_bytes(merge.move_values()));
    copy_type_info(vl1, *result.list);
    result.map1 = merge.take_map1();
    result.map2 = merge.take_map2();
    return result;
  });
}

}  // namespace

MergedLists MergeLists(const TBaseArray& vl1, const TBaseArray& vl2) {
  return merge_lists(vl1, vl2, false);
}

MergedLists MppMergeLists(const TBaseArray& vl1, const TBaseArray& vl2) {
  return merge_lists(vl1, vl2, true);
}

namespace {

/// Tells lists of equal values at the speed of memory; texts are compared one by one.
bool same_bytes(const TBaseArray& vl1, const TBaseArray& vl2) {
  return vl1.GetDataType() != QX_DT_STRING && vl1.FArraySize == vl2.FArraySize &&
         memcmp(vl1.data(), vl2.data(),
                static_cast<size_t>(vl1.FArraySize) * static_cast<size_t>(vl1.FUnitSize)) == 0;
}

}  // namespace

MatchedLists MppMatchLists(const TBaseArray& vl1, const TBaseArray& vl2) {
  check_lists(vl1, vl2);
  if (&vl1 == &vl2 || same_bytes(vl1, vl2)) return {nullptr, nullptr, vl1.FArraySize};
  return with_family(vl1, [&]<class Array>(const Array& first) {
    const int entries = std::max(vl1.FArraySize, vl2.FArraySize);
    ListMerge<Array> merge(first, static_cast<const Array&>(vl2), compile_workers(entries, true));
    merge.finish_maps();
    // A list as long as the merged one has all its values.
    return MatchedLists{merge.size() == vl1.FArraySize ? nullptr : merge.take_map1(),
                        merge.size() == vl2.FArraySize ? nullptr : merge.take_map2(), merge.size()};
  });
}

void DoRenumber(TIntArray& numbers, const int* map, int size) {
  if (changes(map, size)) renumber(numbers.PIntAr(), map, {0, numbers.FArraySize});
}

void DoMppRenumber(TIntArray& numbers, const int* map, int size) {
  if (!changes(map, size)) return;
  int* const rows = numbers.PIntAr();
  const int workers = compile_workers(numbers.FArraySize, true);
  run_step(QX_MPP_RENUMBER, workers, [&](int worker) {
    renumber(rows, map, even_slice(numbers.FArraySize, workers, worker));
  });
}

namespace {

std::unique_ptr<TBaseArray> accommodate(TIntArray& pv1, const TBaseArray& vl1, TIntArray& pv2,
                                        const TBaseArray& vl2, bool mpp) {
  MergedLists merged = merge_lists(vl1, vl2, mpp);
  if (merged.list == nullptr) return nullptr;
  // Nothing fails from here on, so that both columns change or none.
  const auto renumber_rows = mpp ? DoMppRenumber : DoRenumber;
  renumber_rows(pv1, merged.map1.get(), vl1.FArraySize);
  renumber_rows(pv2, merged.map2.get(), vl2.FArraySize);
  return std::move(merged.list);
}

}  // namespace

std::unique_ptr<TBaseArray> AccommodationMain(TIntArray& pv1, const TBaseArray& vl1, TIntArray& pv2,
                                              const TBaseArray& vl2) {
  return accommodate(pv1, vl1, pv2, vl2, false);
}

std::unique_ptr<TBaseArray> MppAccommodationMain(TIntArray& pv1, const TBaseArray& vl1,
                                                 TIntArray& pv2, const TBaseArray& vl2) {
  return accommodate(pv1, vl1, pv2, vl2, true);
}

}  // namespace qxe
