// Names of parameterised cases.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace qxe::test {

/// For INSTANTIATE_TEST_SUITE_P: a case is called by its field `name`, letters and digits only.
template <class Case>
std::string case_name(const testing::TestParamInfo<Case>& info) {
  return info.param.name;
}

}  // namespace qxe::test
