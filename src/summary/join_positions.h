// A join's columns for a summary, without its pairs: a column is read at positions, and each
// position stands for a row of one side.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "joins/join_table.h"
#include "storage/filters.h"

namespace qxe {

/// A column by position, from 1, in place of row. Its value list is the source's.
class PositionColumn : NonCopyable {
 public:
  /// `numbers` was made by make_row_numbers.
  PositionColumn(const TFilter& source, const std::string& name, Block<int> numbers, int count);
  /// Where positions are rows.
  PositionColumn(const TFilter& source, const std::string& name);
  ~PositionColumn();

  /// Leaves of the numbers only whether there is a value: 0 or 1, of a list of two.
  void test_for_null();

  TFilter& filter() { return filter_; }
  const TFilter& filter() const { return filter_; }

 private:
  TFilter filter_;
  bool own_numbers_;
  TIntArray two_values_;
};

class JoinPositions : NonCopyable {
 public:
  virtual ~JoinPositions() = default;

  /// A column of one side of the join.
  virtual std::unique_ptr<PositionColumn> column(const TFilter& source, int side,
                                                 const std::string& name) const = 0;
};

/// The positions of one side's rows in a set of a join, each as often as it counts.
class SidePositions : public JoinPositions {
 public:
  /// Key numbers are below `keys`.
  SidePositions(const JoinRows& pairs, int side, int keys);

  std::unique_ptr<PositionColumn> column(const TFilter& source, int side,
                                         const std::string& name) const override;
  int count() const { return static_cast<int>(rows_.size()); }
  /// The key number at each position, from 1.
  const TIntArray& keys() const { return keys_; }

 private:
  void take_driving(const JoinRows& pairs);
  void take_driven(const JoinRows& pairs, int keys);

  std::vector<int> rows_;
  TIntArray keys_;
};

/// Where each row of one side has but one partner: the positions of that side's rows, at which the
/// partner's columns can be read too.
class LinePositions : public JoinPositions {
 public:
  /// Null when rows of both sides have several partners. `set` is that of `join`.
  static std::unique_ptr<LinePositions> find(const TJoinTable& join, const JoinSet& set);

  std::unique_ptr<PositionColumn> column(const TFilter& source, int side,
                                         const std::string& name) const override;
  /// All of them: 1, 2, 3, ...
  const TSetArray& all() const { return *all_; }

 private:
  LinePositions(const TJoinTable& join, const JoinSet& set, const JoinRows& pairs, int side,
                Block<int> partners);

  Block<int> partner_numbers(const TFilter& source) const;

  const JoinRows pairs_;
  const int side_;         // whose rows the positions are
  const TSetArray& rows_;  // that side's
  Block<int> partners_;    // of the driven rows; null where the driving rows are the positions
  const TSetArray* all_;
  std::unique_ptr<TSetArray> own_all_;
};

}  // namespace qxe
