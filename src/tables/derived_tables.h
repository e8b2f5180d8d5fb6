// What goes into a derived table, as the tables and the collection are told it.
#pragma once

namespace qxe {

class TRealTable;

/// Columns of an extracted table.
struct ExtractedColumns {
  const int* filters = nullptr;  // ends below 1, may hold the pseudo filters; null: all filters
  bool table_id = false;         // that pseudo filter at the head
  bool rec_no = false;           // that one at the head, behind the other
};

/// Rows and columns of one table for combining, by ids.
struct CombineIds {
  int table;
  int set;
  const int* filters;  // walked in step with the other side's; 0: a column of the other side alone
};

/// The same with the table itself.
struct CombineSource {
  TRealTable& table;
  int set;
  const int* filters;
};

/// The pseudo columns of a combined table, at its head.
struct CombinePseudo {
  bool table_id;
  bool row_number;
};

/// Columns of a realised join.
struct RealizedColumns {
  const int* filters = nullptr;  // ends below 1, may hold the pseudo filters; null: none
  bool master_rows = false;      // the row numbers of side 0 at the head
  bool slave_rows = false;       // those of side 1 at the head, behind the other
};

/// A list of tables for combining: ids that end below 1, a set for each, and up to four lists of
/// integer filters, one for each table, or null.
struct CombineListIds {
  static constexpr int kMaxTables = 64;
  static constexpr int kLists = 4;

  const int* tables;
  const int* sets;
  const int* filters[kLists];
};

}  // namespace qxe
