// Editing, searching and deriving against plain rows: random edits, appends, searches, set
// expressions, find cursors, sorts and derivations on tables of all types, with several sets,
// values that wait in tails and values that are merged. Derived tables are edited like the others,
// and outlive their sources.
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

using Operations = std::vector<EditOperation>;

Operations joined(const std::vector<Operations>& groups) {
  Operations all;
  for (const Operations& group : groups) all.insert(all.end(), group.begin(), group.end());
  return all;
}

constexpr int kSteps = 300;

class EditModelTest : public EngineTest {
 protected:
  /// `run(seed)` for some seeds, or as long as the environment says.
  template <class Run>
  void run_seeds(unsigned rounds, Run&& run) {
    const auto first = static_cast<unsigned>(setting("QXE_EDIT_SEED", 1));
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::seconds(setting("QXE_EDIT_SECONDS", 0));
    unsigned seed = first;
    for (; !HasFailure(); ++seed) {
      if (seed >= first + rounds && std::chrono::steady_clock::now() >= end) break;
      run(seed);
    }
    RecordProperty("steps", static_cast<int>(seed - first) * kSteps);
  }
};

TEST_F(EditModelTest, RandomOperationsEqualTheModel) {
  const auto operations = joined(
      {edits(), selections(), finds(), appends(), table_derivations(), column_derivations()});
  run_seeds(10, [&](unsigned seed) {
    run_edits(EditModel(RandomData(seed)), "seed " + std::to_string(seed), kSteps, operations);
  });
}

// Each seed another code. Half of the operations are edits, so that values wait for a merge and
// cursors go.
TEST_F(EditModelTest, SearchesInEveryCharacterCodeEqualTheModel) {
  const auto operations = joined({edits(), selections(), selections(), finds(), finds()});
  run_seeds(14, [&](unsigned seed) {
    const auto locale = static_cast<int>(seed % 7);
    run_edits(EditModel(RandomData(seed, locale), locale), "seed " + std::to_string(seed), kSteps,
              operations);
  });
}

}  // namespace
}  // namespace qxe::test
