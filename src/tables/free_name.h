// Names that no other table of the database, or filter of the table, has.
#pragma once

#include <stdio.h>

#include <charconv>
#include <string_view>
#include <vector>

#include "tables/tables.h"

namespace qxe {

constexpr size_t kFreeNameSize = TBaseTable::kNameSize + 24;  // with any number

/// Which of "base", "base_#1", "base_#2" and so on `name` is: 0 for the first; -1 for none of them.
inline int number_of_name(std::string_view name, std::string_view base) {
  if (!name.starts_with(base)) return -1;
  name.remove_prefix(base.size());
  if (name.empty()) return 0;
  if (name.size() < 3 || !name.starts_with("_#") || name[2] < '1' || name[2] > '9') return -1;
  int number = 0;
  const auto [rest, fault] = std::from_chars(name.data() + 2, name.data() + name.size(), number);
  return fault == std::errc() && rest == name.data() + name.size() ? number : -1;
}

/// Writes the first of "base", "base_#1", "base_#2" and so on that is none of the `count` names
/// `name_at(i)` to `out`, kFreeNameSize bytes. One pass over the names, however many are alike.
template <class NameAt>
void first_free_name(const char* base, int count, NameAt&& name_at, char* out) {
  std::vector<bool> taken(static_cast<size_t>(count) + 1);
  for (int i = 0; i < count; ++i) {
    const int number = number_of_name(name_at(i), base);
    if (number >= 0 && number <= count) taken[static_cast<size_t>(number)] = true;
  }
  size_t number = 0;
  while (taken[number]) ++number;
  if (number == 0) {
    snprintf(out, kFreeNameSize, "%s", base);
  } else {
    snprintf(out, kFreeNameSize, "%s_#%zu", base, number);
  }
}

}  // namespace qxe
