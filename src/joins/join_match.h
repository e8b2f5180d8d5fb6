// The rows of both sides by their keys, before they are paired: how many rows each value has, which
// values find a partner on the other side, and where the driven rows of a key will stand. No step
// compares values or looks at a pair.
#pragma once

#include "joins/join_set.h"
#include "tables/row_list.h"

namespace qxe {

using Flag = unsigned char;

/// A counter for each value number of a side, of the rows that have it: their number, or for flags
/// whether there are any.
template <class Counter>
Block<Counter> note_values(const RowList& rows, const KeyNumbers& key);
extern template Block<int> note_values(const RowList& rows, const KeyNumbers& key);
extern template Block<Flag> note_values(const RowList& rows, const KeyNumbers& key);

/// Whether the value numbers of the rows ascend.
bool ascends(const RowList& rows, const int* pv);

/// The driven rows by value.
struct DrivenValues {
  Block<int> counts;  // by value number
  bool in_order;      // the rows stand by value already
};
DrivenValues driven_values(const RowList& rows, const KeyNumbers& key);

/// What the values of one side are worth on the other.
struct KeyMatch {
  Block<Flag> driving_hits;           // by driving value number: driven rows have its key
  Block<Flag> driven_hits;            // by driven value number: driving rows have its key
  bool driving_lost = false;          // a driving row finds no partner
  bool driven_lost = false;           // nor does a driven one
  Block<int> partners;                // by driving value number: driven rows with its key
  std::unique_ptr<TSetArray> starts;  // by key number: where its driven rows begin; and their end
  int most = 0;                       // partners of one row
};

/// Rows of both sides by value number, and the key numbers of the values.
template <class Counter>
struct SideValues {
  const Counter* driving;
  const KeyNumbers& driving_key;
  const int* driven;
  const KeyNumbers& driven_key;
};

/// `keys` are the key numbers there are.
template <class Counter>
KeyMatch match_keys(const SideValues<Counter>& sides, int keys);
extern template KeyMatch match_keys(const SideValues<int>& sides, int keys);
extern template KeyMatch match_keys(const SideValues<Flag>& sides, int keys);

}  // namespace qxe
