// Reading a table block by block: a driving row of a join with all its driven rows, or a row of a
// real table. A client opens a reader in a slot, reads to the end and closes it.
#pragma once

#include <memory>
#include <vector>

#include "joins/join_table.h"
#include "tables/table_guest.h"

namespace qxe {

/// A block as clients see it: rows and blocks count from 1.
struct JoinBlock {
  int number;
  int first_row;
  int last_row;
  int master_row;  // the driving row; 0 stands for the driven rows without partner
  int slave_count;
  int* slave_rows;
};

/// Keeps ids alone and looks everything up for each block, so that a change of the table between
/// two blocks does no harm. What a block points to is valid until the table changes.
class TJoinBlockAccess final : public TableGuest {
 public:
  /// `filters` ends below 1 or after kMaxColumns; null: all. Throws
  /// QX_ERROR_NO_SET_ID for a negative set but -1, QX_ERROR_NO_JOIN_SET, QX_JBA_EMPTY_SET,
  /// QX_ERROR_NO_FILTER, QX_ERROR_BLOCK_SIZE for a block of more than a million driven rows.
  TJoinBlockAccess(int slot, TBaseTable& table, int set, const int* filters);

  static constexpr int kMaxColumns = 1024;

  void table_goes() override;

  int largest_block() const { return largest_block_; }
  /// The next block; its columns are in columns(). 1 while more are left, 0 for the last one, -1
  /// after logging behind it.
  int ReadBlock(JoinBlock* block);
  int column_count() const { return static_cast<int>(columns_.size()); }
  _TColumnBuf* columns() { return columns_.data(); }
  int table() const { return table_.id(); }
  int set() const { return set_; }

 private:
  const JoinSet* join_set() const;
  int block_count() const;
  void measure_blocks();
  void setup_columns(const int* filters);
  JoinBlock join_block(const JoinSet& set) const;
  JoinBlock real_block() const;
  void fill_column(size_t column, const JoinBlock& block);

  const int slot_;
  TBaseTable& table_;
  TJoinTable* const join_;  // the table, or null for a real one
  int set_;
  int next_ = 1;
  int largest_block_ = 1;
  std::vector<_TColumnBuf> columns_;
  std::vector<int> sides_;                  // of each column
  std::vector<std::vector<void*>> values_;  // pointers of each column
};

/// The table of open readers, by slot.
extern std::unique_ptr<TJoinBlockAccess> JBAs[QX_N_JBA];

/// The place of a slot, or null.
std::unique_ptr<TJoinBlockAccess>* block_access_place(int slot);

}  // namespace qxe
