// Row editing and derived tables against plain rows: random edits, appends, searches, sorts and
// derivations on tables of all types, with several sets, values that wait in tails and values that
// are merged. Derived tables are edited like the others, and outlive their sources.
//
// QXE_EDIT_SECONDS=n in the environment makes it run for n seconds, from seed QXE_EDIT_SEED on.
#include <stdlib.h>

#include <chrono>

#include "edit_model_operations.h"
#include "support/engine_test.h"

namespace qxe::test {
namespace {

long setting(const char* name, long otherwise) {
  const char* const text = getenv(name);
  return text == nullptr ? otherwise : atol(text);
}

std::vector<EditOperation> all_operations() {
  std::vector<EditOperation> all;
  for (const auto& group :
       {edits(), selections(), appends(), table_derivations(), column_derivations()}) {
    all.insert(all.end(), group.begin(), group.end());
  }
  return all;
}

class EditModelTest : public EngineTest {};

TEST_F(EditModelTest, RandomOperationsEqualTheModel) {
  constexpr int kSteps = 300;
  constexpr unsigned kRounds = 10;
  const auto operations = all_operations();
  const auto first = static_cast<unsigned>(setting("QXE_EDIT_SEED", 1));
  const auto end =
      std::chrono::steady_clock::now() + std::chrono::seconds(setting("QXE_EDIT_SECONDS", 0));
  unsigned seed = first;
  for (; !HasFailure(); ++seed) {
    if (seed >= first + kRounds && std::chrono::steady_clock::now() >= end) break;
    run_edits(seed, kSteps, operations);
  }
  RecordProperty("steps", static_cast<int>(seed - first) * kSteps);
}

}  // namespace
}  // namespace qxe::test
