// Searches of a real table by value, and counts per value.
#include <algorithm>

#include "search/scan.h"
#include "search/search_condition.h"
#include "search/sort.h"
#include "search/text_search.h"
#include "search/wildcard.h"
#include "storage/charcode.h"
#include "tables/realtables.h"

namespace qxe {

/// The frame of every search: finds filter and set, merges pending values, lets `make` make a set
/// and `store` register it. Returns the new set's id or a negative status.
template <class Store, class Make>
int TRealTable::make_set(const char* layer, int filter, int set, Store store, Make&& make) {
  TFilter* const column = GetFilter(filter);
  if (column == nullptr) {
    return report(layer, QX_ERROR_NO_FILTER, "No Such Filter: %d", filter);
  }
  const TSetArray* const source = GetSet(set);
  if (source == nullptr) return report(layer, QX_ERROR_NO_SET_ID, "No Such Set: %d", set);
  CheckMergeFilterTVL(true);
  return raised((this->*store)(make(*source, column)));
}

int TRealTable::SearchByField(int filter, int set, int ope, const char* v1, const char* v2) {
  return make_set("SearchByField", filter, set, &TRealTable::register_set,
                  [&](const TSetArray& source, TFilter* column) {
                    return source.SearchByValue(column, ope, v1, v2, false);
                  });
}

int TRealTable::MppSearchByField(int filter, int set, int ope, const char* v1, const char* v2) {
  return make_set("MppSearchByField", filter, set, &TRealTable::register_set,
                  [&](const TSetArray& source, TFilter* column) {
                    return source.MppSearchByValue(column, ope, v1, v2, false);
                  });
}

int TRealTable::search_values(const char* layer, int filter, int set, int count,
                              const void* values) {
  return make_set(layer, filter, set, &TRealTable::register_set,
                  [&](const TSetArray& source, TFilter* column) {
                    return source.SearchByNValues(column, count, values);
                  });
}

int TRealTable::SearchByFieldNValues(int filter, int set, int count, const void* values) {
  return search_values("SearchByFieldNValues", filter, set, count, values);
}

int TRealTable::MppSearchByFieldNValues(int filter, int set, int count, const void* values) {
  return search_values("MppSearchByFieldNValues", filter, set, count, values);
}

namespace {

/// The rows that a hit table names, as a set under the source's name.
std::unique_ptr<TSetArray> named_hits(const TSetArray& source, const TFilter& column,
                                      const unsigned char* hits) {
  auto result =
      MoveRecsForScan(source, column.PVL->PIntAr(), TableTest{hits, column.VL->FArraySize});
  result->SetSetName(source.GetSetName());
  return result;
}

}  // namespace

int TRealTable::Search(int filter, int set, const unsigned char* flags) {
  return make_set(
      "Search", filter, set, &TRealTable::AddSetWithoutCopy,
      [&](const TSetArray& source, TFilter* column) { return named_hits(source, *column, flags); });
}

// Wildcards

namespace {

constexpr size_t kMostPatternBytes = 4095;

/// NULL never matches, whatever the pattern.
bool matches_wildcard(const char* text, const char* pattern) {
  return *text != '\0' && wildcard_do_exec(pattern, text);
}

std::unique_ptr<TSetArray> search_wildcard(const TSetArray& source, const TFilter& column,
                                           const WildCard& wildcard) {
  if (source.FArraySize == 0) return set_like(source);
  const std::string piece = wildcard.longest_piece();
  const std::string prefix = wildcard.prefix();
  auto result = search_texts(
      source, column,
      {matches_wildcard, wildcard.normal_form(), piece.c_str(), false, prefix.c_str()});
  result->SetSetName(source.GetSetName());
  return result;
}

}  // namespace

int TRealTable::search_wildcard_pattern(const char* layer, int filter, int set,
                                        const char* pattern) {
  if (pattern == nullptr || strlen(pattern) > kMostPatternBytes) {
    return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : Pattern");
  }
  const WildCard wildcard(pattern, getSystemInfoDBCharCode() != QX_CODE_CP1252);
  const int position = FilterID2Pos(filter);
  if (position >= 0 && filter_at(position)->data_type() != QX_DT_STRING) {
    return report(layer, QX_ERROR_TYPE_MISMATCH, "Illegal data type ( Not STRING )");
  }
  return make_set(layer, filter, set, &TRealTable::AddSetWithoutCopy,
                  [&](const TSetArray& source, TFilter* column) {
                    return search_wildcard(source, *column, wildcard);
                  });
}

int TRealTable::SearchByFieldWildCard(int filter, int set, const char* pattern) {
  return search_wildcard_pattern("SearchByFieldWildCard", filter, set, pattern);
}

int TRealTable::MppSearchByFieldWildCard(int filter, int set, const char* pattern) {
  return search_wildcard_pattern("MppSearchByFieldWildCard", filter, set, pattern);
}

int TRealTable::CountN(int set, int filter, int* out) {
  TFilter* const column = GetFilter(filter);
  if (column == nullptr) return QX_ERROR_NO_FILTER;
  const TSetArray* const source = GetSet(set);
  if (source == nullptr) return QX_ERROR_NO_SET;
  CheckMergeFilterTVL(true);
  const int values = column->VL->FArraySize;
  memset(out, 0, sizeof(int) * static_cast<size_t>(values));
  CountupNExist(source->FArraySize, source->PIntAr(), values, column->PVL->PIntAr(), out);
  return 0;
}

// Strings whose stored values carry one leading byte that is not to be matched.

namespace {

/// A text list past the leading byte of every entry but entry 0.
struct SkippedTexts {
  using FamilyOf = Family<TStrArray>;

  explicit SkippedTexts(const TStrArray& array) : list(array), size(array.FArraySize) {}
  const char* operator[](int i) const { return list[i] + (i > 0 ? 1 : 0); }

  ValueView<TStrArray> list;
  int size;
};

/// Marks the entries from 1 on that meet the condition; entry 0 never hits.
void mark_skipped_texts(const SkippedTexts& list, int ope, const char* v1, const char* v2,
                        unsigned char* hits) {
  const auto mark_range = [&](int first, int end) {
    for (int i = std::max(first, 1); i < end; ++i) hits[i] = 1;
  };
  const auto mark_each = [&](auto&& matches) {
    for (int i = 1; i < list.size; ++i) hits[i] = matches(list[i]);
  };
  const BoundPosition first = bound_position(v1, list);
  switch (ope) {
    case QX_OPE_EQ: return mark_range(first.lower(), first.found ? first.upper() : 0);
    case QX_OPE_BETWEEN: return mark_range(first.lower(), bound_position(v2, list).upper());
    case QX_OPE_LEQ: return mark_range(1, first.upper());
    case QX_OPE_GEQ: return mark_range(first.lower(), list.size);
    case QX_OPE_NEQ: mark_range(1, first.lower()); return mark_range(first.upper(), list.size);
    case QX_OPE_WITHIN: return mark_range(first.upper(), bound_position(v2, list).lower());
    case QX_OPE_LES: return mark_range(1, first.lower());
    case QX_OPE_GT: return mark_range(first.upper(), list.size);
    case QX_OPE_BEGINS: {
      const size_t length = strlen(v1);
      return mark_each([&](const char* text) { return strncmp(text, v1, length) == 0; });
    }
    case QX_OPE_CONTAINS:
      return mark_each([&](const char* text) { return qxembsstr(text, v1) != nullptr; });
    case QX_OPE_ENDS: return mark_each([&](const char* text) { return has_tail(text, v1); });
    default:
      throw CQXException(report("SearchByField2", QX_ERROR_OPERATION, "Invalid Parameter : OpeNo"));
  }
}

}  // namespace

int TRealTable::SearchByField2(int filter, int set, int ope, const char* v1, const char* v2) {
  return make_set("SearchByField2", filter, set, &TRealTable::AddSetWithoutCopy,
                  [&](const TSetArray& source, TFilter* column) {
                    if (column->VL->GetDataType() != QX_DT_STRING) {
                      throw CQXException(report("SearchByField2", QX_ERROR_NOT_STRING,
                                                "Illegal data type ( Not STRING )"));
                    }
                    const SkippedTexts list(static_cast<const TStrArray&>(*column->VL));
                    Block<unsigned char> hits = make_cleared_block<unsigned char>(list.size);
                    mark_skipped_texts(list, ope, v1, v2, hits.get());
                    return named_hits(source, *column, hits.get());
                  });
}

}  // namespace qxe
