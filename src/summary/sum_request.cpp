#include "summary/sum_request.h"

#include "frame/api/innerapi.h"
#include "parallel/smpengine.h"

namespace qxe {

namespace {

constexpr char kLayer[] = "NonCubeSum";
constexpr int kAllFlags = QX_SUM_COUNT | QX_SUM_MAX | QX_SUM_MIN | QX_SUM_SUM | QX_SUM_AVG;
constexpr int kTextFlags = QX_SUM_COUNT | QX_SUM_MAX | QX_SUM_MIN;
constexpr int kMaxDigits = 10;

void check_count(int count, int limit, const char* name) {
  if (count >= 0 && count <= limit) return;
  throw CQXException(
      report(kLayer, QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : %s(%d)", name, count));
}

}  // namespace

unsigned long available_memory() {
  unsigned long total = 0;
  unsigned long available = 0;
  innerQXGetSystemMemInfo(&total, &available);
  return available;
}

void check_counts(const NonCubeRequest& request) {
  check_count(request.nDim, QX_MAX_DIM, "nDim");
  check_count(request.nMsr, QX_MAX_MSR, "nMsr");
}

int SumMeasure::possible_flags() const {
  return is_number() ? kAllFlags : kTextFlags;
}

Wanted SumMeasure::wanted() const {
  return {filter, (flags & (QX_SUM_MAX | QX_SUM_MIN)) != 0,
          is_number() && (flags & (QX_SUM_SUM | QX_SUM_AVG)) != 0};
}

void SumMeasure::check() const {
  if (flags == 0 || (flags & ~possible_flags()) != 0) {
    throw CQXException(report(kLayer, QX_ERROR_PARAMETER, "Invalid Parameter : flags(%d)", flags));
  }
  if (rounds() && digits > kMaxDigits) {
    throw CQXException(
        report(kLayer, QX_ERROR_SUMMARY_PARAMETER, "Invalid Parameter : digits(%d)", digits));
  }
}

SumMethod choose_method(const std::vector<TFilter*>& dimensions,
                        const std::vector<SumMeasure>& measures, int rows) {
  SumWork work;
  for (const TFilter* dimension : dimensions) work.add_dimension(dimension->VL->FArraySize);
  for (const SumMeasure& measure : measures) work.flags |= measure.flags;
  work.rows = rows;
  work.measures = static_cast<int>(measures.size());
  work.workers = ENG->run_threads();
  work.l2_size = ENG->l2_size();
  work.available_memory = available_memory();
  return GetSuitableSumMethod(work);
}

}  // namespace qxe
