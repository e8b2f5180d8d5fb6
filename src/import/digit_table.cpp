#include "import/digit_table.h"

#include <algorithm>
#include <string_view>

#include "import/digits.h"
#include "import/text_table.h"

namespace qxe {

namespace {

constexpr int kWord = 8;

uint64_t repeated(char byte) {
  return 0x0101010101010101 * static_cast<uint64_t>(static_cast<unsigned char>(byte));
}

}  // namespace

int DigitTable::no_page_[kPageSize] = {};

inline unsigned DigitTable::key(int layout, int digits) {
  const bool fits = static_cast<unsigned>(digits) < 1u << kDigitBits;  // and is not -1
  return fits ? static_cast<unsigned>(layout) << kDigitBits | static_cast<unsigned>(digits)
              : kNoKey;
}

// The digits of a text with a point move together; how many stand behind it is the layout. Further
// zeros in front are left to the dictionary, so that no two texts have one key.
inline unsigned DigitTable::fixed_point_key(const Cell& cell) {
  if (cell.size < 1 || cell.size > kWord) return kNoKey;
  int unused = kWord - cell.size;
  uint64_t word = load_word(cell.text) << (8 * unused);
  int whole_digits = cell.size;
  int decimals = 0;
  if (const uint64_t points = zero_bytes(word ^ repeated('.')); points != 0) {
    const int place = std::countr_zero(points) / 8;
    decimals = kWord - 1 - place;
    whole_digits = place - unused;
    if (whole_digits == 0 || decimals == 0) return kNoKey;
    const uint64_t below = (uint64_t{1} << (8 * place)) - 1;
    word = (word & ~(below << 8 | 0xff)) | (word & below) << 8;
    ++unused;
  }
  if (whole_digits > 1 && *cell.text == '0') return kNoKey;
  return key(decimals, value_of_digits(pad_with_zeros(word, unused)));
}

inline unsigned DigitTable::date_key(const Cell& cell) {
  constexpr std::string_view kSeparators = "/-.";
  if (cell.size != 10 || cell.text[4] != cell.text[7]) return kNoKey;
  const size_t layout = kSeparators.find(cell.text[4]);
  if (layout == kSeparators.npos) return kNoKey;
  const uint64_t front = load_word(cell.text);     // yyyy/mm/
  const uint64_t back = load_word(cell.text + 2);  // yy/mm/dd
  constexpr uint64_t kDay = 0xffff000000000000;
  const int value =
      value_of_digits((front & 0xffffffff) | (front >> 8 & 0xffff00000000) | (back & kDay));
  const int year = value / 10000, month = value / 100 % 100, day = value % 100;
  if (value < 0 || month > 12 || day > 31) return kNoKey;
  return key(static_cast<int>(layout), (year * 13 + month) * 32 + day);
}

inline unsigned DigitTable::time_key(const Cell& cell) {
  if (cell.size != kWord || cell.text[2] != ':' || cell.text[5] != ':') return kNoKey;
  constexpr uint64_t kColons = 0x0000ff0000ff0000;
  const uint64_t word = (load_word(cell.text) & ~kColons) | (repeated('0') & kColons);
  const int value = value_of_digits(word);  // hh0mm0ss
  const int hour = value / 1000000, minute = value / 1000 % 1000, second = value % 1000;
  if (value < 0 || minute > 59 || second > 59) return kNoKey;
  return key(0, (hour * 60 + minute) * 60 + second);
}

unsigned DigitTable::key_of(const Cell& cell) const {
  switch (shape_) {
    case DigitShape::kFixedPoint: return fixed_point_key(cell);
    case DigitShape::kDate: return date_key(cell);
    case DigitShape::kTime: return time_key(cell);
    default: return kNoKey;
  }
}

// All places first, so that many of the table's cache misses are under way at a time.
template <class KeyOf>
void DigitTable::find_all(std::span<const Cell> cells, int* numbers, KeyOf&& key_of) const {
  const int* places[TextTable::kMaxCells];
  for (size_t i = 0; i < cells.size(); ++i) {
    const unsigned key = key_of(cells[i]);
    places[i] = places_[key >> kPageBits] + (key & (kPageSize - 1));
    __builtin_prefetch(places[i]);
  }
  for (size_t i = 0; i < cells.size(); ++i) numbers[i] = *places[i];
}

void DigitTable::find(std::span<const Cell> cells, int* numbers) const {
  // Lambdas, unlike the functions themselves, are inlined into the loop.
  switch (places_.empty() ? DigitShape::kNone : shape_) {
    case DigitShape::kFixedPoint:
      return find_all(cells, numbers, [](const Cell& cell) { return fixed_point_key(cell); });
    case DigitShape::kDate:
      return find_all(cells, numbers, [](const Cell& cell) { return date_key(cell); });
    case DigitShape::kTime:
      return find_all(cells, numbers, [](const Cell& cell) { return time_key(cell); });
    default: std::fill_n(numbers, cells.size(), 0);
  }
}

void DigitTable::add(const Cell& cell, int number) {
  const unsigned key = key_of(cell);
  if (key == kNoKey) return;
  if (places_.empty()) places_.assign((kNoKey >> kPageBits) + 1, no_page_);
  int*& page = places_[key >> kPageBits];
  if (page == no_page_) {
    const auto pages = static_cast<long>(pages_.size());
    if (pages >= kFreePages + entries_ / kEntriesPerPage) return;
    pages_.push_back(make_cleared_block<int>(kPageSize));
    page = pages_.back().get();
  }
  page[key & (kPageSize - 1)] = number;
  ++entries_;
}

void DigitTable::close() {
  places_ = std::vector<int*>();
  pages_.clear();
}

}  // namespace qxe
