// The rows of up to 64 tables, one below the other, with where they come from and up to four
// integer columns.
#include <algorithm>
#include <utility>
#include <vector>

#include "search/compiler.h"
#include "storage/family.h"
#include "tables/pseudo_columns.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

constexpr char kLayer[] = "CombineTableList";

/// One table of the list.
struct ListedTable {
  TRealTable& table;
  SourceRows part;
};

TRealTable& listed_real_table(const TTableCollection& tables, int id) {
  TBaseTable* const table = tables.find(id);
  if (table == nullptr) {
    throw CQXException(report(kLayer, QX_ERROR_NO_TABLE, "No Such Table: %d ", id));
  }
  if (table->GetType() == TableKind::kReal) return static_cast<TRealTable&>(*table);
  throw CQXException(report(kLayer, QX_ERROR_NO_TABLE, "Illegal table type ( Not REAL )"));
}

std::vector<ListedTable> listed_tables(const TTableCollection& tables, const CombineListIds& ids) {
  std::vector<ListedTable> list;
  for (int i = 0; ids.tables[i] >= 1; ++i) {
    if (i >= CombineListIds::kMaxTables) {
      throw CQXException(
          report(kLayer, QX_ERROR_PARAMETER, "Invalid Parameter : nTables(%d)", i + 1));
    }
    TRealTable& table = listed_real_table(tables, ids.tables[i]);
    const TSetArray* const set = table.GetSet(ids.sets[i]);
    if (set == nullptr) {
      throw CQXException(
          report(kLayer, QX_ERROR_NO_SET, "No Such Set: SetIDList[%d] %d]", i, ids.sets[i]));
    }
    list.push_back({table, {table.id(), RowList(*set)}});
  }
  if (list.empty()) throw CQXException(report(kLayer, QX_ERROR_NO_TABLE, "Not Real Table"));
  return list;
}

/// The integer filter of each table for one column of the result; null where there is none.
std::vector<const TFilter*> listed_filters(const std::vector<ListedTable>& tables,
                                           const int* filters) {
  std::vector<const TFilter*> list;
  for (size_t i = 0; i < tables.size(); ++i) {
    list.push_back(nullptr);
    if (filters[i] < 1) continue;
    const TRealTable& table = tables[i].table;
    const int position = table.FilterID2Pos(filters[i]);
    if (position < 0) {
      throw CQXException(report(kLayer, QX_ERROR_NO_FILTER, "No Such Filter: %d", filters[i]));
    }
    list.back() = table.filter_at(position);
    if (list.back()->data_type() != QX_DT_INTEGER) {
      throw CQXException(report(kLayer, QX_ERROR_DATA_TYPE, "Illegal data type ( Not INTEGER )"));
    }
  }
  return list;
}

/// The values of the rows of one table.
void read_integers(const TFilter* filter, const RowList& rows, int* out) {
  if (filter == nullptr) {
    std::fill_n(out, rows.count, QX_NULL_INT);
    return;
  }
  gather_rows(std::as_const(*filter->PVL).PIntAr(), rows, 0, rows.count, out);
  const int* const values = std::as_const(static_cast<TIntArray&>(*filter->VL)).values();
  for (int i = 0; i < rows.count; ++i) out[i] = values[out[i]];
}

Column integer_column(const std::vector<ListedTable>& tables,
                      const std::vector<const TFilter*>& filters, int rows) {
  const Block<int> values = make_block<int>(rows);
  int* next = values.get();
  for (size_t i = 0; i < tables.size(); ++i) {
    read_integers(filters[i], tables[i].part.rows, next);
    next += tables[i].part.rows.count;
  }
  return compile_column(QX_DT_INTEGER, rows, rows, values.get(), true);
}

/// The name of the first filter, or a generated one when there is none.
void add_integer_column(TRealTable& result, const std::vector<ListedTable>& tables,
                        const std::vector<const TFilter*>& filters) {
  char name[TBaseTable::kNameSize];
  raised(ValidateNames("", TTableCollection::GeneratedName::kFilter, name));
  const auto named = std::find_if(filters.begin(), filters.end(),
                                  [](const TFilter* filter) { return filter != nullptr; });
  result.add_blank_filter(named == filters.end() ? name : (*named)->FFilterName)
      .adopt(integer_column(tables, filters, result.TotalRecs()));
}

}  // namespace

int TTableCollection::CombineTableList(const char* name, const CombineListIds& ids) {
  if (count() >= kMaxTables) throw CQXException(QX_ERROR_TABLE_COUNT, "TableCount overflow");
  const std::vector<ListedTable> tables = listed_tables(*this, ids);
  std::vector<std::vector<const TFilter*>> columns;
  for (const int* const filters : ids.filters) {
    if (filters != nullptr) columns.push_back(listed_filters(tables, filters));
  }
  if (name == nullptr || *name == '\0' || CheckTableName(name) < 0) {
    return report(kLayer, QX_ERROR_CHAIN_NAME, "Invalid Parameter : PCTblName(%s)",
                  name == nullptr ? "" : name);
  }
  std::vector<SourceRows> parts;
  parts.reserve(tables.size());
  for (const ListedTable& listed : tables) parts.push_back(listed.part);
  const int rows = total_rows(parts);
  char unique[TBaseTable::kNameSize];
  raised(GenTableName(name, unique));
  for (const ListedTable& listed : tables) listed.table.CheckMergeFilterTVL(true);
  auto result = std::make_unique<TRealTable>(issue_table_id(), unique);
  result->add_root_set(rows);
  result->add_blank_filter("TableID").adopt(table_id_column(parts));
  result->add_blank_filter("RecNo").adopt(row_number_column(parts));
  for (const auto& filters : columns) add_integer_column(*result, tables, filters);
  return adopt_table(std::move(result));
}

}  // namespace qxe
