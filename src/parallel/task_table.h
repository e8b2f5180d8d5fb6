// Task numbers, task functions and the table that binds them.
#pragma once

#include "parallel/task_list.h"

namespace qxe {

#define RQX_TASK_ID(id, ...) id,
enum TaskId : int { RQX_TASKS(RQX_TASK_ID, RQX_TASK_ID) kTaskCount };
#undef RQX_TASK_ID

static_assert(kTaskCount == 72);

/// Works on one worker's parameter block; returns 0 or above, or a negative status.
using TaskFunction = int (*)(void*);

struct TaskRecord {
  const char* name;
  const char* message;
  TaskFunction function;  // null: not built, never started
};

extern const TaskRecord mpp_func_map[kTaskCount];

}  // namespace qxe
