// The table of open summaries. A client chooses the handle, a place in it.
#pragma once

#include <memory>

#include "summary/summary.h"

namespace qxe {

extern std::unique_ptr<TSummary> Summaries[QX_N_SUMMARY];

/// The place of a handle. Logs under `layer` and throws QX_ERROR_SUMMARY_HANDLE.
std::unique_ptr<TSummary>& summary_place(const char* layer, int handle);
/// Its summary. Also throws QX_ERROR_NO_SUMMARY for a free handle.
TSummary& open_summary(const char* layer, int handle);
/// One that has been executed. Also throws QX_ERROR_ROW_RANGE.
TSummary& executed_summary(const char* layer, int handle);

void close_summary(int handle);

}  // namespace qxe
