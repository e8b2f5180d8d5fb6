// Editing, searching and deriving against plain rows: random edits, appends, searches, set
// expressions, find cursors, sorts and derivations on tables of all types, with several sets,
// values that wait in tails and values that are merged. Derived tables are edited like the others,
// and outlive their sources.
//
// QXE_EDIT_SECONDS=n in the environment makes it run for n seconds, from seed QXE_EDIT_SEED on.
#include "edit_model_operations.h"
#include "support/engine_test.h"
#include "support/run_seeds.h"

namespace qxe::test {
namespace {

using Operations = std::vector<EditOperation>;

Operations joined(const std::vector<Operations>& groups) {
  Operations all;
  for (const Operations& group : groups) all.insert(all.end(), group.begin(), group.end());
  return all;
}

constexpr int kSteps = 300;

class EditModelTest : public EngineTest {
 protected:
  template <class Run>
  void run_cases(unsigned cases, Run&& run) {
    RecordProperty("steps", static_cast<int>(run_seeds("EDIT", cases, run)) * kSteps);
  }
};

TEST_F(EditModelTest, RandomOperationsEqualTheModel) {
  const auto operations = joined(
      {edits(), selections(), finds(), appends(), table_derivations(), column_derivations()});
  run_cases(10, [&](unsigned seed) {
    run_edits(EditModel(RandomData(seed)), "seed " + std::to_string(seed), kSteps, operations);
  });
}

// Each seed another code. Half of the operations are edits, so that values wait for a merge and
// cursors go.
TEST_F(EditModelTest, SearchesInEveryCharacterCodeEqualTheModel) {
  const auto operations = joined({edits(), selections(), selections(), finds(), finds()});
  run_cases(14, [&](unsigned seed) {
    const auto locale = static_cast<int>(seed % 7);
    run_edits(EditModel(RandomData(seed, locale), locale), "seed " + std::to_string(seed), kSteps,
              operations);
  });
}

}  // namespace
}  // namespace qxe::test
