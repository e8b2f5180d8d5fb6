// RQXNonCubeSum of a join: what a summary of the join's rows as a real table would give, without
// making those rows.
#pragma once

#include "summary/join_positions.h"
#include "summary/sum_request.h"

namespace qxe {

class TJoinSum {
 public:
  /// Throws when the request names what `join` has not, or too much. Merges pending values.
  TJoinSum(TJoinTable& join, const NonCubeRequest& request);

  /// Makes the table; returns its id or a negative status.
  int MppRun();

 private:
  struct JoinColumn {
    const TFilter* source;
    int side;
    std::string name;
    std::unique_ptr<PositionColumn> at;  // its numbers where the summary reads them
  };

  JoinColumn find_column(int id) const;
  std::vector<int> ranked_dimensions() const;
  void place_columns(const JoinPositions& master, const JoinPositions& slave);
  template <class Face>
  int run(Grouping& groups, const Face& face);
  void add_dimensions(TRealTable& output, const Grouping& groups) const;
  Reduced reduce(Grouping& groups, size_t measure) const;

  TJoinTable& join_;
  const JoinSet* set_;
  std::vector<JoinColumn> dimensions_;
  std::vector<JoinColumn> measures_;
  std::vector<SumMeasure> asked_;  // of the measures
};

}  // namespace qxe
