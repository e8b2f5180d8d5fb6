// Chains of joins as trees, and columns for them.
#pragma once

#include "joins/join_table.h"

namespace qxe {

/// Inner joins, the slave of each being the master of the next.
struct ChainRequest {
  const int* joins;                    // ids; the list ends below 1
  int associations;                    // further columns, 0 to QX_MAX_ASSOCIATION
  int (*filters)[QX_MAX_ASSOCIATION];  // of each level; null without associations
  int* tables;                         // out: the table of each level
  int (*sets)[QX_MAX_CHAIN];           // out: [0] master sets, [1] slave sets of the joins
};

/// Values of a source table for the nodes of a tree.
struct TreeColumns {
  int level;           // below 0: of all levels but 0
  int source;          // table id
  const int* filters;  // ends below 1
  bool inherited;      // nodes below the level take the value of the node they are below
};

/// Most joins of a chain, and most columns of one TTableCollection::Qualify; the rest is ignored.
extern int ValMaxJoinChain;
extern int ValMaxTreeQualify;

}  // namespace qxe
