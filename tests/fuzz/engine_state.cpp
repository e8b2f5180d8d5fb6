#include "fuzz/engine_state.h"

#include <stdio.h>
#include <stdlib.h>

#include <string_view>
#include <vector>

#include "parallel/smpengine.h"
#include "storage/family.h"
#include "support/engine_test.h"
#include "tables/realtables.h"
#include "tables/table_collection.h"

namespace qxe::test {

namespace {

template <class Value>
void put(std::string& image, const Value& value) {
  image.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void put(std::string& image, const char* text) {
  image.append(text).push_back('\0');
}

void put_values(std::string& image, const TBaseArray& list) {
  put(image, ArrayDataTypeEx(list));
  put(image, list.FArraySize);
  with_family(list, [&](const auto& own) {
    const auto values = view_of(own);
    for (int i = 0; i < values.size; ++i) put(image, values[i]);
    if constexpr (std::is_same_v<decltype(own), const TNumericArray&>) {
      put(image, own.GetDecimalInfo().scale);
      put(image, own.GetDecimalInfo().rounding);
    }
  });
}

bool ascends(const TBaseArray& list) {
  return with_family(list, [](const auto& own) {
    const auto values = view_of(own);
    using FamilyOf = typename decltype(values)::FamilyOf;
    if (values.size < 1 || !FamilyOf::is_null(values[0])) return false;
    for (int i = 1; i < values.size; ++i) {
      if (FamilyOf::compare(values[i - 1], values[i]) >= 0) return false;
    }
    return true;
  });
}

void check_numbers(const TFilter& filter, int rows, bool all_values_used) {
  const int* const numbers = filter.PVL->PIntAr();
  std::vector<bool> used(static_cast<size_t>(filter.VL->FArraySize));
  used[0] = true;
  for (int row = 0; row <= rows; ++row) {
    if (numbers[row] < 0 || numbers[row] >= filter.VL->FArraySize) {
      finding("a row's value number is outside the value list", std::to_string(row));
    }
    used[static_cast<size_t>(numbers[row])] = true;
  }
  if (!all_values_used) return;
  for (size_t number = 0; number < used.size(); ++number) {
    if (!used[number]) finding("no row holds this value", std::to_string(number));
  }
}

}  // namespace

void finding(const std::string& what, const std::string& detail) {
  fprintf(stderr, "FINDING: %s\n%s\n", what.c_str(), detail.c_str());
  abort();
}

std::string printable(const std::string& text) {
  std::string shown;
  for (const char c : text) {
    char escape[8];
    const auto byte = static_cast<unsigned char>(c);
    snprintf(escape, sizeof escape, byte >= ' ' && byte < 0x7f ? "%c" : "\\x%02x", byte);
    shown += c == '\n' ? "\n" : escape;
  }
  return shown;
}

TRealTable& real_table(int id) {
  TBaseTable* const table = ENG->collection()->find(id);
  if (table == nullptr) finding("a table is missing", std::to_string(id));
  return static_cast<TRealTable&>(*table);
}

std::string table_image(int id) {
  const TRealTable& table = real_table(id);
  const int rows = table.TotalRecs();
  std::string image = table.name() + std::string(" of ") + std::to_string(rows) + " rows\n";
  for (int i = 0; i < table.GetNFilter(); ++i) {
    const TFilter& filter = *table.filter_at(i);
    put(image, filter.FFilterName);
    put_values(image, *filter.VL);
    image.append(reinterpret_cast<const char*>(filter.PVL->PIntAr()),
                 (static_cast<size_t>(rows) + 1) * sizeof(int));
  }
  return image;
}

void check_well_formed(int id, bool all_values_used) {
  const TRealTable& table = real_table(id);
  for (int i = 0; i < table.GetNFilter(); ++i) {
    const TFilter& filter = *table.filter_at(i);
    if (!ascends(*filter.VL)) finding("a value list does not ascend", filter.FFilterName);
    check_numbers(filter, table.TotalRecs(), all_values_used);
  }
}

std::string drained_ring() {
  std::string text;
  for (const RingEntry& entry : drain_ring()) {
    text += hex(entry.code) + " " + entry.call + ": " + entry.message + "\n";
  }
  return text;
}

}  // namespace qxe::test
