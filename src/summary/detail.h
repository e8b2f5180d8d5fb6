// The distinct values of a filter within a set, by value or by how many rows they have.
#pragma once

#include <memory>

#include "tables/table_guest.h"
#include "tables/tables.h"

namespace qxe {

/// Which list of values a position (from 1) counts in.
struct DetailPosition {
  int order_kind;  // 0 by value, others by descending count, ties by value
  int direction;   // 0 from the front, others from the end
  int list_kind;   // 0 all values of the filter, others those that rows have
  int position;
};

class TDetailDisp final : public TableGuest {
 public:
  /// Throws QX_ERROR_NO_SET or QX_ERROR_NO_FILTER.
  TDetailDisp(TBaseTable& table, int set, int filter);

  void table_goes() override;

  int data_type() const { return data_type_; }
  int value_count() const { return value_count_; }
  int distinct_count() const { return distinct_; }

  int count_at(const DetailPosition& place) const { return counts_[CalcPos(place)]; }
  /// The list and the place in it that hold the value. Throws QX_ERROR_DETAIL if the filter's
  /// values have changed since.
  const TBaseArray& values() const;
  int number_at(const DetailPosition& place) const;

 private:
  int CalcPos(const DetailPosition& place) const;
  void count_all_values(int set);
  void count_values_met(const TSetArray& rows, const TFilter& column);
  void order_values();

  TBaseTable& table_;
  const int filter_;
  int list_version_ = 0;
  int data_type_ = 0;
  int value_count_ = 0;  // of the filter
  int listed_ = 0;       // values with a count here: all of the filter, or those that rows have
  int distinct_ = 0;     // values that rows have
  Block<int> counts_;    // of each listed value
  Block<int> numbers_;   // value number of each listed value; null: its own index
  Block<int> present_;   // listed values that rows have, by value
  Block<int> order_;     // all listed values by descending count
};

/// The open detail, if any, and the handle it was given.
extern std::unique_ptr<TDetailDisp> DetailDisp;
extern int DetailHandle;

}  // namespace qxe
