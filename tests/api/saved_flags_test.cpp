// The saved flags tell a client what it has not saved yet.
#include <string.h>

#include <functional>

#include "support/case_name.h"
#include "support/engine_test.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

using Flags = std::vector<int>;  // sets, tables, settings

Flags flags() {
  Flags now(3);
  EXPECT_EQ(RQXGetSavedFlag(&now[0], &now[1], &now[2]), 0);
  return now;
}

struct ChangeCase {
  const char* name;
  std::function<int(const TestTable&)> change;
  Flags after;
  Flags before = {1, 1, 1};
};

class SavedFlagsTest : public EngineTest, public testing::WithParamInterface<ChangeCase> {};

TEST_P(SavedFlagsTest, FollowTheChange) {
  const ChangeCase& wanted = GetParam();
  const TestTable table(
      {{"a", ints({2, 1})}, {"n", decimals(2, {"1.25", "2.50"})}, {"s", strings({"x", "y"})}});
  const int set = table.add_set({1});
  RQXChangeCurrentSetID(table.id(), 1);
  EXPECT_EQ(set, 2);
  RQXSetSavedFlag(wanted.before[0], wanted.before[1], wanted.before[2]);
  EXPECT_GE(wanted.change(table), 0);
  EXPECT_EQ(flags(), wanted.after);
}

const Flags kSets = {0, 1, 1};
const Flags kTables = {1, 0, 1};
const Flags kNone = {1, 1, 1};
char block[64];
int rows[] = {1};
int one = 1;
int keys[] = {1, 0};
int dirs[] = {0, 0};
NumericInfo finer = {3, QX_ROUND_HALFUP};
char* value() {
  return reinterpret_cast<char*>(&one);
}

/// A save, or a load of what has been saved in front of the change, which must not count.
using Step = int (*)(const TestTable&);
std::function<int(const TestTable&)> behind(Step save, Step load) {
  return [=](const TestTable& table) {
    EXPECT_GE(save(table), 0);
    RQXSetSavedFlag(0, 1, 0);
    return load(table);
  };
}
const Flags kTableLoaded = {0, 0, 0};

alignas(8) char image[100'000];
void* image_end = nullptr;
long place = 0;
char home[512] = "";

int save_database(const TestTable&) {
  home[0] = '\0';
  return RQXSaveDBAs(home, "db");
}
int save_table(const TestTable& table) {
  return RQXSaveRealTableAs("", "t", table.id());
}
int save_tables(const TestTable& table) {
  const int ids[] = {table.id(), -1};
  return RQXSaveRealTable2("db.QXD", 0, ids, &place);
}
int save_table_image(const TestTable& table) {
  return RQXSaveRealTable2Mem(table.id(), sizeof image, image, &image_end);
}
int save_database_image(const TestTable&) {
  return RQXSaveDB2Mem(sizeof image, image, &image_end);
}
int write_stream(const TestTable& table) {
  RQXMemStreamOpenWrite();
  const int status = RQXSaveRealTableMem(table.id(), 0);
  void* area = nullptr;
  RQXMemStreamGetWriteBuf(&place, &area);
  memcpy(image, area, static_cast<size_t>(place));
  RQXMemStreamClose();
  return status;
}

INSTANTIATE_TEST_SUITE_P(
    Files, SavedFlagsTest,
    testing::Values(
        ChangeCase{"SaveAs", save_database, kNone, {0, 0, 0}},
        ChangeCase{"Save", behind(save_database, [](const TestTable&) { return QXSaveDB(); }),
                   kNone},
        ChangeCase{"SaveOldVersion",
                   [](const TestTable& table) {
                     home[0] = '\0';
                     RQXDeleteRealFilter(table.id(), 2);
                     return RQXSaveDBAsOldVer(home, "db", QX_DATA_VERSION_OLD);
                   },
                   kNone},
        ChangeCase{"Load",
                   behind(save_database, [](const TestTable&) { return RQXLoadDB("", "db"); }),
                   kNone},
        ChangeCase{"SaveTable", save_table, {0, 0, 0}, {0, 0, 0}},
        ChangeCase{"LoadTable",
                   behind(save_table, [](const TestTable&) { return QXLoadRealTable("", "t"); }),
                   kTableLoaded},
        ChangeCase{"SaveTables",
                   [](const TestTable& table) {
                     save_database(table);
                     RQXSetSavedFlag(0, 1, 0);
                     return save_tables(table);
                   },
                   {0, 1, 0}},
        ChangeCase{"LoadTables",
                   [](const TestTable& table) {
                     save_database(table);
                     save_tables(table);
                     RQXSetSavedFlag(0, 1, 0);
                     int id = 0;
                     return RQXLoadRealTable2("db.QXD", 0, 1, &id, &place);
                   },
                   kTableLoaded},
        ChangeCase{"SaveTableImage", save_table_image, {0, 0, 0}, {0, 0, 0}},
        ChangeCase{
            "LoadTableImage",
            behind(save_table_image,
                   [](const TestTable&) { return RQXLoadRealTableFromMem(image, &image_end); }),
            kTableLoaded},
        ChangeCase{
            "LoadSizedTableImage",
            behind(save_table_image,
                   [](const TestTable&) { return RQXLoadMemRealTable(image, sizeof image); }),
            kTableLoaded},
        ChangeCase{"SaveDatabaseImage", save_database_image, {0, 0, 0}, {0, 0, 0}},
        ChangeCase{"LoadDatabaseImage",
                   behind(save_database_image,
                          [](const TestTable&) { return RQXLoadDBFromMem(image, &image_end); }),
                   kNone},
        ChangeCase{"WriteStream", write_stream, {0, 0, 0}, {0, 0, 0}},
        ChangeCase{"ReadStream",
                   behind(write_stream,
                          [](const TestTable&) {
                            RQXMemStreamOpenRead(place, image);
                            const int id = RQXLoadRealTableMem();
                            RQXMemStreamClose();
                            return id;
                          }),
                   kTableLoaded}),
    case_name<ChangeCase>);

INSTANTIATE_TEST_SUITE_P(
    All, SavedFlagsTest,
    testing::Values(
        ChangeCase{"AddTable", [](const TestTable&) { return RQXAddRealTable("x", 1); }, kTables},
        ChangeCase{"DeleteTable", [](const TestTable& table) { return QXDeleteTable(table.id()); },
                   kTables},
        ChangeCase{"RenameTable",
                   [](const TestTable& table) { return RQXSetTableName(table.id(), "x"); },
                   kTables},
        ChangeCase{"AddFilter",
                   [](const TestTable& table) {
                     return RQXAddRealFilter2(table.id(), 0, "x", 2, 0, nullptr, nullptr, nullptr);
                   },
                   kTables},
        ChangeCase{"DeleteFilter",
                   [](const TestTable& table) { return RQXDeleteRealFilter(table.id(), 1); },
                   kTables},
        ChangeCase{"MoveFilter",
                   [](const TestTable& table) { return RQXMoveRealFilter(table.id(), 0, 1); },
                   kTables},
        ChangeCase{"RenameFilter",
                   [](const TestTable& table) { return RQXSetFilterName(table.id(), 1, "x"); },
                   kTables},
        ChangeCase{
            "FilterAttributes",
            [](const TestTable& table) { return RQXSetFilterAttr(table.id(), 1, block, false); },
            kTables},
        ChangeCase{
            "NumericInfo",
            [](const TestTable& table) { return RQXSetNumericInfo(table.id(), 2, &finer, false); },
            kTables},
        ChangeCase{"InsertRows",
                   [](const TestTable& table) { return RQXInsertRealRows(table.id(), 1, 1); },
                   kTables},
        ChangeCase{"DeleteRows",
                   [](const TestTable& table) { return QXDeleteRealRows(table.id(), 1, 1); },
                   kTables},
        ChangeCase{"DeleteRowsOfASet",
                   [](const TestTable& table) { return RQXDeleteRealRowsEx(table.id(), 2, 1, 1); },
                   kTables},
        ChangeCase{
            "Overwrite",
            [](const TestTable& table) { return QXOverwriteRealEx(table.id(), 1, 1, 1, 1, &one); },
            kTables},
        ChangeCase{"OverwriteOne",
                   [](const TestTable& table) {
                     return RQXOverwriteRealExIntR1(table.id(), 1, 1, 1, one);
                   },
                   kTables},
        ChangeCase{
            "Fill",
            [](const TestTable& table) { return RQXFillRealEx(table.id(), 1, 1, 1, 2, &one); },
            kTables},
        ChangeCase{"DuplicateTable",
                   [](const TestTable& table) { return RQXDuplicateRealTable("", table.id()); },
                   kTables},
        ChangeCase{
            "ExtractRows",
            [](const TestTable& table) { return RQXExtractRealTable("", table.id(), 1, nullptr); },
            kTables},
        ChangeCase{"CombineTables",
                   [](const TestTable& table) {
                     return QXCombineRealTable(nullptr, table.id(), 1, keys, table.id(), 1, keys);
                   },
                   kTables},
        ChangeCase{"CombineTableList",
                   [](const TestTable& table) {
                     int tables[] = {table.id(), 0};
                     char name[] = "x";
                     return RQXCombineTableList(name, tables, rows, nullptr, nullptr, nullptr,
                                                nullptr);
                   },
                   kTables},
        ChangeCase{"SumUp",
                   [](const TestTable& table) {
                     return RQXNonCubeSum(table.id(), 1, 1, rows, 0, nullptr, nullptr, nullptr);
                   },
                   kTables},
        ChangeCase{"Condense",
                   [](const TestTable& table) { return RQXCondenseRealTable(table.id()); },
                   kTables},
        ChangeCase{"DuplicateFilter",
                   [](const TestTable& table) { return QXDupRealFilter(table.id(), 1); }, kTables},
        ChangeCase{
            "ConvertFilter",
            [](const TestTable& table) { return RQXDupRealFilterEx(table.id(), 1, QX_DT_STRING); },
            kTables},
        ChangeCase{"SummaryTable",
                   [](const TestTable& table) {
                     RQXSummaryOpen(0, table.id(), 1, 0, nullptr, 1);
                     RQXSummaryExec(0, 15, &one);
                     return RQXSummaryIntoRealTable(0, 1);
                   },
                   kTables},
        ChangeCase{"SummaryRecord",
                   [](const TestTable& table) { return RQXSetSumFilterAttr(table.id(), 1, block); },
                   kTables},
        ChangeCase{"AddSet",
                   [](const TestTable& table) { return RQXAddSetReal(table.id(), 1, rows); },
                   kSets},
        ChangeCase{"DeleteSet", [](const TestTable& table) { return RQXDeleteSet(table.id(), 2); },
                   kSets},
        ChangeCase{"Purge", [](const TestTable& table) { return RQXPurgeSubsets(table.id()); },
                   kSets},
        ChangeCase{"NameSet",
                   [](const TestTable& table) { return RQXSetSetName(table.id(), 2, "x"); }, kSets},
        ChangeCase{"Search",
                   [](const TestTable& table) {
                     return RQXSearchByField(table.id(), 1, 1, QX_OPE_EQ, value(), value());
                   },
                   kSets},
        ChangeCase{"SearchManyValues",
                   [](const TestTable& table) {
                     return RQXSearchByFieldNValues(table.id(), 1, 1, 1, value());
                   },
                   kSets},
        ChangeCase{
            "SearchPattern",
            [](const TestTable& table) { return RQXSearchByFieldWildCard(table.id(), 3, 1, "*"); },
            kSets},
        ChangeCase{
            "SearchRows",
            [](const TestTable& table) { return RQXSearchByRowNo(table.id(), 1, 1, 0, 1, 1); },
            kSets},
        ChangeCase{"Mark",
                   [](const TestTable& table) {
                     return RQXHighSpeedSearchSetMark(table.id(), 1, 1, true);
                   },
                   kSets},
        ChangeCase{
            "Enable",
            [](const TestTable& table) { return RQXHighSpeedSearchEnable(table.id(), 1, true); },
            kTables},
        ChangeCase{
            "OpenFind",
            [](const TestTable& table) { return RQXOpenIntFindReal(table.id(), 1, 0, 2, 2); },
            kNone},
        ChangeCase{"Sort",
                   [](const TestTable& table) { return RQXSortByField(table.id(), 1, 1, 0); },
                   kSets},
        ChangeCase{"SortByRow",
                   [](const TestTable& table) { return QXSortByRowNo(table.id(), 1, 1, 0); },
                   kSets},
        ChangeCase{"SortByKeys",
                   [](const TestTable& table) {
                     return RQXIntegratedSortByField(table.id(), 1, keys, dirs);
                   },
                   kSets},
        ChangeCase{"ExtractUnique",
                   [](const TestTable& table) { return RQXExtractUniqueReal(table.id(), 1, keys); },
                   kSets},
        ChangeCase{
            "SetOperation",
            [](const TestTable& table) { return RQXSetOpeReal(table.id(), QX_SET_AND, 1, 2); },
            kSets},
        ChangeCase{"Complement", [](const TestTable& table) { return QXSetNotReal(table.id(), 2); },
                   kSets},
        ChangeCase{"ChangeCurrentSet",
                   [](const TestTable& table) { return RQXChangeCurrentSetID(table.id(), 2); },
                   kNone,
                   {1, 1, 0}},
        ChangeCase{"Clear", [](const TestTable&) { return RQXClearDB(); }, kNone},
        ChangeCase{"ClearKeepsThemAsTheyAre",
                   [](const TestTable&) { return RQXClearDB(); },
                   {0, 1, 0},
                   {0, 1, 0}},
        ChangeCase{"Read",
                   [](const TestTable& table) {
                     table.texts("a");
                     table.rows();
                     return 0;
                   },
                   kNone}),
    case_name<ChangeCase>);

TEST_F(SavedFlagsTest, StayWhenTheChangeFails) {
  const TestTable table({{"a", ints({2, 1})}});
  RQXSetSavedFlag(1, 1, 1);
  RQXDeleteTable(99);
  RQXDeleteSet(table.id(), 1);
  RQXSortByField(table.id(), 1, 1, 2);
  RQXAddRealTable("x", -1);
  RQXDeleteRealFilter(table.id(), 99);
  RQXInsertRealRows(table.id(), -1, 1);
  RQXOverwriteRealExIntR1(table.id(), 1, 1, 3, 0);
  RQXLoadRealTable("", "none");
  EXPECT_EQ(flags(), kNone);
  RQXSetSavedFlag(0, 0, 0);
  RQXSaveDB();
  RQXLoadDB("", "none");
  EXPECT_EQ(flags(), kTableLoaded);
}

TEST_F(SavedFlagsTest, AreTrueOrFalseWhateverIsSet) {
  EXPECT_EQ(QXSetSavedFlag(5, 0, -1), 0);
  Flags now(3);
  EXPECT_EQ(QXGetSavedFlag(&now[0], &now[1], &now[2]), 0);
  EXPECT_EQ(now, (Flags{1, 0, 1}));
}

}  // namespace
}  // namespace qxe::test
