// The kept inputs of a fuzz target: seeds, and what fuzzing has found. A target aborts on a fault.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "support/files.h"

namespace qxe::test {
namespace {

std::vector<std::string> kept_inputs() {
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator(QXE_CORPUS)) {
    paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

std::string name_of(const testing::TestParamInfo<std::string>& info) {
  std::string name = std::filesystem::path(info.param).filename();
  std::replace_if(
      name.begin(), name.end(), [](char c) { return isalnum(c) == 0; }, '_');
  return name;
}

class ReplayTest : public testing::TestWithParam<std::string> {};

TEST_P(ReplayTest, IsTakenOrRefused) {
  const std::string input = read_file(GetParam());
  EXPECT_EQ(LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size()),
            0);
}

INSTANTIATE_TEST_SUITE_P(Kept, ReplayTest, testing::ValuesIn(kept_inputs()), name_of);

}  // namespace
}  // namespace qxe::test
