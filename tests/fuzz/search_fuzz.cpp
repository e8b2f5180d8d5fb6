// Any bytes as texts that are searched, in each character code. The first three choose the code,
// the operator and the number of workers; then come two bounds and the texts of the rows, each up
// to a NUL.
#include <algorithm>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/choices.h"
#include "fuzz/engine_state.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/import_check.h"
#include "parallel/smpengine.h"
#include "storage/charcode.h"
#include "support/naive_model.h"
#include "tables/realtables.h"

namespace qxe::test {
namespace {

constexpr Choice<int> kOperators[] = {
    {'c', QX_OPE_CONTAINS}, {'e', QX_OPE_ENDS},   {'b', QX_OPE_BEGINS}, {'=', QX_OPE_EQ},
    {'!', QX_OPE_NEQ},      {'<', QX_OPE_LES},    {'>', QX_OPE_GT},     {'l', QX_OPE_LEQ},
    {'g', QX_OPE_GEQ},      {'w', QX_OPE_WITHIN}, {'B', QX_OPE_BETWEEN}};
constexpr int kMostWorkers = 4;

using Rows = std::vector<int>;

struct SearchInput {
  int locale = 0;
  int ope = 0;
  int workers = 1;
  std::string low;
  std::string high;
  std::vector<std::string> texts;

  /// What the naive model says of a text; `find`: as a find cursor sees it.
  bool hits(const std::string& text, bool find) const {
    return (find ? is_find_hit : is_hit)(QX_DT_STRING, text, ope, low, high, locale);
  }
  /// The opposite, but for the rule that nothing is at most "", which is one of the operator that
  /// is searched for in the end.
  bool hits_negated(const std::string& text) const {
    if (low.empty() && ope == QX_OPE_LEQ) return !text.empty();
    if (low.empty() && ope == QX_OPE_GT) return false;
    return !hits(text, false);
  }
  template <class Test>
  Rows rows_that(const Rows& source, Test&& test) const {
    Rows rows;
    std::copy_if(source.begin(), source.end(), std::back_inserter(rows),
                 [&](int row) { return test(texts[static_cast<size_t>(row) - 1]); });
    return rows;
  }
};

SearchInput input_of(std::string_view bytes) {
  SearchInput input;
  Chooser chooser(bytes.substr(0, 3));
  bytes.remove_prefix(std::min<size_t>(bytes.size(), 3));
  input.locale = chooser.from(kLocales).stands_for;
  input.ope = chooser.from(kOperators).stands_for;
  input.workers = 1 + chooser.number() % kMostWorkers;
  input.low = next_string(bytes);
  input.high = next_string(bytes);
  while (!bytes.empty()) input.texts.push_back(next_string(bytes));
  return input;
}

std::string told(const Rows& rows) {
  std::string text;
  for (const int row : rows) text += std::to_string(row) + " ";
  return text;
}

void expect_rows(const char* what, const Rows& found, const Rows& wanted) {
  if (found != wanted) finding(what, told(found) + "\nwanted: " + told(wanted));
}

void check_searches(const SearchInput& input, TRealTable& table, const TSetArray& source) {
  const Rows rows(source.PIntAr(), source.PIntAr() + source.FArraySize);
  for (const bool negate : {false, true}) {
    const auto found = source.SearchByValue(table.filter_at(0), input.ope, input.low.c_str(),
                                            input.high.c_str(), negate);
    const Rows wanted = input.rows_that(rows, [&](const std::string& text) {
      return negate ? input.hits_negated(text) : input.hits(text, false);
    });
    expect_rows(negate ? "a negated search differs" : "a search differs",
                {found->PIntAr(), found->PIntAr() + found->FArraySize}, wanted);
  }
}

Rows stepped(const TRealTable& table, int search, int set, bool backward) {
  Rows rows;
  int filter = 0;
  int position = backward ? table.TotalRecs() + 1 : 0;
  while (table.GetNextHit(search, set, position, backward, &filter, &position) == 1) {
    rows.push_back(position);
  }
  return rows;
}

void check_cursor(const SearchInput& input, TRealTable& table) {
  const int search = table.OpenStrFind(table.filter_at(0)->FFilterID, input.ope, input.low.c_str(),
                                       input.high.c_str());
  Rows all(input.texts.size());
  std::iota(all.begin(), all.end(), 1);
  Rows wanted =
      input.rows_that(all, [&](const std::string& text) { return input.hits(text, true); });
  const int root = table.GetCurrentSetID();
  expect_rows("a cursor steps to other rows", stepped(table, search, root, false), wanted);
  int filter = 0;
  int count = -1;
  table.GetFindStatus(&count, &filter);
  if (count != static_cast<int>(wanted.size()) + (input.hits("", true) ? 1 : 0)) {
    finding("a cursor counts wrong", std::to_string(count));
  }
  std::reverse(wanted.begin(), wanted.end());
  expect_rows("a cursor steps back to other rows", stepped(table, search, root, true), wanted);
}

void check(const SearchInput& input) {
  ENG->set_division({input.workers, 1, 1, shares_in_turn});
  setDBCharCode(convertLocaleID2DBCharCode(input.locale));
  std::vector<const char*> texts;
  for (const std::string& text : input.texts) texts.push_back(text.c_str());
  const int rows = static_cast<int>(texts.size());
  TRealTable table(1, "t", rows);
  table.AddFilter2(0, "c", QX_DT_STRING, rows, sizeof(char*), texts.data());
  check_searches(input, table, table.root_set());
  if (rows > 0) {  // a row beside many values has them decided for itself
    TSetArray last(1, false);
    last.PIntAr()[0] = rows;
    check_searches(input, table, last);
  }
  check_cursor(input, table);
}

}  // namespace
}  // namespace qxe::test

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  qxe::test::check(qxe::test::input_of({reinterpret_cast<const char*>(data), size}));
  return 0;
}
