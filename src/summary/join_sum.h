// RQXNonCubeSum of a join: what a summary of the join's rows as a real table would give, without
// making those rows.
#pragma once

#include "summary/join_groups.h"

namespace qxe {

class TJoinSum {
 public:
  /// Throws when the request names what `join` has not, or too much. Merges pending values.
  TJoinSum(TJoinTable& join, const NonCubeRequest& request);

  /// Makes the table; returns its id or a negative status.
  int MppRun();

 private:
  TJoinTable& join_;
  const JoinSet* set_;
  std::vector<JoinColumn> dimensions_;
  std::vector<JoinColumn> measures_;
  std::vector<SumMeasure> asked_;
};

}  // namespace qxe
