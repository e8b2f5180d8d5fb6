// Random cases, each of which a seed tells.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <string>

#include "qxe.h"

namespace qxe::test {

inline long setting(const std::string& name, long otherwise) {
  const char* const text = getenv(name.c_str());
  return text == nullptr ? otherwise : atol(text);
}

/// `run(seed)` for `cases` seeds from 1 on, until one fails, whose seed is told.
/// QXE_<area>_SECONDS=n in the environment makes it go on for n seconds, QXE_<area>_SEED sets the
/// first seed. Returns how many have run.
template <class Run>
unsigned run_seeds(const std::string& area, unsigned cases, Run&& run) {
  using Clock = std::chrono::steady_clock;
  const auto first = static_cast<unsigned>(setting("QXE_" + area + "_SEED", 1));
  const auto end = Clock::now() + std::chrono::seconds(setting("QXE_" + area + "_SECONDS", 0));
  unsigned seed = first;
  for (; !testing::Test::HasFailure(); ++seed) {
    if (seed >= first + cases && Clock::now() >= end) break;
    SCOPED_TRACE("seed " + std::to_string(seed));
    run(seed);
  }
  return seed - first;
}

/// `check` of a Case made from each seed, with a fresh database each time. See run_seeds.
template <class Case>
void run_cases(const std::string& area, unsigned cases, void (Case::*check)()) {
  run_seeds(area, cases, [check](unsigned seed) {
    Case one(seed);
    (one.*check)();
    RQXClearDB();
  });
}

}  // namespace qxe::test
