#include "parallel/task_table.h"

namespace qxe {

#define RQX_TASK_DECLARE(id, message, function) int function(void*);
#define RQX_TASK_NOTHING(id, message)
RQX_TASKS(RQX_TASK_DECLARE, RQX_TASK_NOTHING)
#undef RQX_TASK_DECLARE
#undef RQX_TASK_NOTHING

#define RQX_TASK_RECORD(id, message, function) {#id, message, function},
#define RQX_TASK_EMPTY(id, message) {#id, message, nullptr},
const TaskRecord mpp_func_map[kTaskCount] = {RQX_TASKS(RQX_TASK_RECORD, RQX_TASK_EMPTY)};
#undef RQX_TASK_RECORD
#undef RQX_TASK_EMPTY

}  // namespace qxe
