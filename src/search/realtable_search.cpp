// Searches of a real table by value, and counts per value.
#include <algorithm>

#include "search/set_searches.h"
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

int TRealTable::Search(int filter, int set, const unsigned char* flags) {
  return make_set("Search", filter, set, &TRealTable::AddSetWithoutCopy,
                  [&](const TSetArray& source, TFilter* column) {
                    return search_hits(source, *column, flags);
                  });
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

int TRealTable::SearchByField2(int filter, int set, int ope, const char* v1, const char* v2) {
  return make_set("SearchByField2", filter, set, &TRealTable::AddSetWithoutCopy,
                  [&](const TSetArray& source, TFilter* column) {
                    return search_skipped_texts(source, *column, ope, v1, v2);
                  });
}

}  // namespace qxe
