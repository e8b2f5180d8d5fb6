// Walks through failures of changes of what is there.
#include "faults_fixture.h"

namespace qxe::test {
namespace {

// Calls that change what is there: each works on a fresh database. A fault leaves all as it was.

class ChangesTest : public EngineTest, public testing::WithParamInterface<Operation> {
 protected:
  /// What a call makes of a fresh database.
  std::string outcome(const Base& base, int status) {
    EXPECT_GE(status, 0) << hex(status) << "; " << to_text(drain_ring());
    return GetParam().outcome(base, status);
  }

  /// One call with a fault, and one without when it has failed. Returns whether the fault fired.
  bool run(const Fault& fault, const std::string& wanted) {
    RQXClearDB();
    const Base base;
    const int cursor = RQXOpenIntFindReal(base.id(), base.filter(kInt), QX_OPE_GEQ, 0, 0);
    RQXSetSavedFlag(1, 1, 1);
    drain_ring();
    const std::string before = database_text();
    int status = 0;
    bool fired = false;
    {
      const ArmedFault armed(fault);
      status = GetParam().call(base);
      fired = armed.fired();
    }
    if (status < 0) {
      expect_failure(status,
                     fault.kind == FaultKind::kFileCall ? QX_ERROR_FILE : QX_ERROR_OUT_OF_MEMORY);
      EXPECT_EQ(database_text(), before);
      int count = 0, filter = 0;
      EXPECT_EQ(RQXGetFindStatus(base.id(), &count, &filter), cursor);
      status = GetParam().call(base);
    }
    EXPECT_EQ(outcome(base, status), wanted);
    return fired;
  }
};

TEST_P(ChangesTest, AreWholeOrNotAtAll) {
  std::string wanted;
  {
    const Base base;
    wanted = outcome(base, GetParam().call(base));
  }
  walk([&](const Fault& fault) { return run(fault, wanted); });
}

std::string whole_base(const Base& base, int) {
  return table_text(base.id()) + rows_of_set(base, 1) + rows_of_set(base, 2);
}
std::string table_count(const Base&, int) {
  return std::to_string(RQXGetNTable());
}

template <int type>
int append_to_filter(const Base& base) {
  const int filter = base.filter(type == QX_DT_INTEGER ? kInt : kString);
  return RQXAppendRealFilter2(base.id(), filter, type, -1, 4, "",
                              type == QX_DT_INTEGER ? "values.txt" : "texts.bin");
}

int append_rows(const Base& base, int position, const char* catalog) {
  return RQXAppendCatalogFileEx2(base.id(), position, 70, "", catalog, "", "rows.csv");
}

int rescale(const Base& base) {
  NumericInfo info = {base.column(kDecimal).column.scale - 1, QX_ROUND_HALFUP};
  return RQXSetNumericInfo(base.id(), base.filter(kDecimal), &info, false);
}

/// The values of the first rows into later ones.
template <size_t column>
int overwrite(const Base& base) {
  return RQXOverwriteRealEx(base.id(), base.filter(column), 1, 31, 20, base.values(column).data());
}

int fill_strings(const Base& base) {
  char text[] = "quite another text";
  return RQXFillRealExStrR1(base.id(), base.filter(kString), 2, 2, 4, text);
}

INSTANTIATE_TEST_SUITE_P(
    Edits, ChangesTest,
    testing::Values(
        Operation{"InsertRows", [](const Base& base) { return RQXInsertRealRows(base.id(), 7, 9); },
                  whole_base, keep},
        Operation{"DeleteRows",
                  [](const Base& base) { return RQXDeleteRealRows(base.id(), 2, 40); }, whole_base,
                  keep},
        Operation{"DeleteRowsOfASet",
                  [](const Base& base) { return RQXDeleteRealRowsEx(base.id(), 2, 2, 4); },
                  whole_base, keep},
        Operation{"OverwriteIntegers", overwrite<kInt>, whole_base, keep},
        Operation{"OverwriteDates", overwrite<kDate>, whole_base, keep},
        Operation{"OverwriteStrings", overwrite<kString>, whole_base, keep},
        Operation{"OverwriteDecimals", overwrite<kDecimal>, whole_base, keep},
        Operation{"FillIntegers",
                  [](const Base& base) {
                    return RQXFillRealExIntR1(base.id(), base.filter(kInt), 1, 1, 50, 4711);
                  },
                  whole_base, keep},
        Operation{"FillStrings", fill_strings, whole_base, keep}),
    case_name<Operation>);

INSTANTIATE_TEST_SUITE_P(
    All, ChangesTest,
    testing::Values(
        Operation{"ClearDB", [](const Base&) { return RQXClearDB(); }, table_count, keep},
        Operation{"DeleteTable", [](const Base& base) { return RQXDeleteTable(base.id()); },
                  table_count, keep},
        Operation{"ReInitialize", [](const Base&) { return RQXReInitializeMS(); }, table_count,
                  keep},
        Operation{"Rescale", rescale, whole_base, keep},
        Operation{"AppendIntegers", append_to_filter<QX_DT_INTEGER>, whole_base, keep},
        Operation{"AppendStrings", append_to_filter<QX_DT_STRING>, whole_base, keep},
        Operation{"AppendRows", [](const Base& base) { return append_rows(base, -1, "rows.cat"); },
                  whole_base, keep},
        Operation{"OverwriteRows",
                  [](const Base& base) { return append_rows(base, 5, "rows.cat"); }, whole_base,
                  keep},
        Operation{"AppendDecimalsOfFewerDigits",
                  [](const Base& base) { return append_rows(base, 100, "digits.cat"); }, whole_base,
                  keep}),
    case_name<Operation>);

}  // namespace
}  // namespace qxe::test
