#include "summary/summaries.h"

namespace qxe {

// Empty when the engine ends: the tables go first, and each summary with its table.
std::unique_ptr<TSummary> Summaries[QX_N_SUMMARY];

namespace {

[[noreturn]] void refuse_handle(const char* layer, int code) {
  throw CQXException(report(layer, code, "Invalid Parameter : SumHandle"));
}

}  // namespace

std::unique_ptr<TSummary>& summary_place(const char* layer, int handle) {
  if (handle < 0 || handle >= QX_N_SUMMARY) refuse_handle(layer, QX_ERROR_SUMMARY_HANDLE);
  return Summaries[handle];
}

TSummary& open_summary(const char* layer, int handle) {
  const auto& place = summary_place(layer, handle);
  if (place == nullptr) refuse_handle(layer, QX_ERROR_NO_SUMMARY);
  return *place;
}

TSummary& executed_summary(const char* layer, int handle) {
  TSummary& summary = open_summary(layer, handle);
  if (summary.done() == 0) refuse_handle(layer, QX_ERROR_ROW_RANGE);
  return summary;
}

void close_summary(int handle) {
  Summaries[handle].reset();
}

}  // namespace qxe
