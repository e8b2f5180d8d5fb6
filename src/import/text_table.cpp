#include "import/text_table.h"

#include <algorithm>

namespace qxe {

namespace {

static_assert(std::endian::native == std::endian::little, "short texts become keys by shifting");

constexpr long kFirstSlots = 64;
constexpr long kLargestPage = 2L << 20;
// From here on a table is looked up with its memory fetched ahead.
constexpr int kPrefetchFrom = 4096;

uint64_t load(const char* text) {
  uint64_t word;
  memcpy(&word, text, sizeof word);
  return word;
}

/// Not 0 exactly when a byte of `word` is.
uint64_t zero_bytes(uint64_t word) {
  return (word - 0x0101010101010101) & ~word & 0x8080808080808080;
}

uint64_t mix(uint64_t hash, uint64_t word) {
  hash = (hash ^ word) * 0xd6e8feb86659fd93;
  return hash ^ (hash >> 32);
}

/// The same bytes; both longer than 8, of one size.
bool same_long_text(const char* left, const char* right, int size) {
  const char* const left_last = left + size - 8;
  const char* const right_last = right + size - 8;
  for (; left < left_last; left += 8, right += 8) {
    if (load(left) != load(right)) return false;
  }
  return load(left_last) == load(right_last);
}

}  // namespace

TextTable::TextTable()
    : slots_(make_cleared_block<Slot>(kFirstSlots)), shift_(64 - std::countr_zero(0UL + kFirstSlots)) {
  texts_.push_back({"", 0});
}

TextTable::Key TextTable::key_of(Cell cell) {
  uint64_t key = 0;
  uint64_t zeros = 0;
  if (cell.size <= 8) {
    if (cell.size == 0) return {0, 0};
    const int unused = 64 - 8 * cell.size;
    key = load(cell.text) << unused >> unused;
    zeros = zero_bytes(key | ~(~uint64_t{0} >> unused));
    key ^= key >> 32;  // the product of slot_of must feel the high bytes as well
  } else {
    const char* const last = cell.text + cell.size - 8;
    for (const char* place = cell.text; place < last; place += 8) {
      const uint64_t word = load(place);
      zeros |= zero_bytes(word);
      key = mix(key, word);
    }
    zeros |= zero_bytes(load(last));
    key = mix(key, load(last));
  }
  if (zeros == 0) return {key, cell.size};
  return key_of({cell.text, static_cast<int>(strlen(cell.text))});
}

bool TextTable::holds(const Slot& slot, const Key& key, const char* text) const {
  return slot.key == key.key && slot.size == key.size &&
         (key.size <= 8 || same_long_text(texts_[slot.number].text, text, key.size));
}

void TextTable::number(std::span<const Cell> cells, int* numbers) {
  Key keys[kMaxCells];
  for (size_t i = 0; i < cells.size(); ++i) {
    keys[i] = key_of(cells[i]);
    __builtin_prefetch(&slots_[slot_of(keys[i].key)]);
  }
  if (count() >= kPrefetchFrom) prefetch_texts({keys, cells.size()});
  for (size_t i = 0; i < cells.size(); ++i) numbers[i] = number_of(keys[i], cells[i].text);
}

// First the entries of the texts that will be compared, then the texts.
void TextTable::prefetch_texts(std::span<const Key> keys) const {
  const auto candidate = [&](const Key& key) {
    const Slot& slot = slots_[slot_of(key.key)];
    return key.size > 8 && slot.key == key.key ? &texts_[slot.number] : nullptr;
  };
  for (const Key& key : keys) {
    if (const Cell* entry = candidate(key)) __builtin_prefetch(entry);
  }
  for (const Key& key : keys) {
    if (const Cell* entry = candidate(key)) __builtin_prefetch(entry->text);
  }
}

int TextTable::number_of(const Key& key, const char* text) {
  if (key.size == 0) return 0;
  const size_t last = (size_t{1} << (64 - shift_)) - 1;
  for (size_t place = slot_of(key.key);; place = (place + 1) & last) {
    Slot& slot = slots_[place];
    if (slot.size == 0) return add(slot, key, text);
    if (holds(slot, key, text)) return slot.number;
  }
}

int TextTable::add(Slot& slot, const Key& key, const char* text) {
  const int number = count();
  char* const copy = room_for(key.size + 1);
  memcpy(copy, text, static_cast<size_t>(key.size));
  copy[key.size] = '\0';
  texts_.push_back({copy, key.size});
  slot = {key.key, key.size, number};
  if (++used_ * 2 > (1L << (64 - shift_))) grow();
  return number;
}

void TextTable::grow() {
  const long old_size = 1L << (64 - shift_);
  const Block<Slot> old = std::exchange(slots_, make_cleared_block<Slot>(old_size * 2));
  --shift_;
  const size_t last = static_cast<size_t>(old_size * 2 - 1);
  for (long i = 0; i < old_size; ++i) {
    const Slot& slot = old[static_cast<size_t>(i)];
    if (slot.size == 0) continue;
    size_t place = slot_of(slot.key);
    while (slots_[place].size != 0) place = (place + 1) & last;
    slots_[place] = slot;
  }
}

char* TextTable::room_for(long bytes) {
  if (bytes > free_bytes_) {
    page_bytes_ = std::max(std::min(page_bytes_ * 2, kLargestPage), bytes);
    pages_.push_back(make_block<char>(page_bytes_));
    free_ = pages_.back().get();
    free_bytes_ = page_bytes_;
  }
  char* const room = free_;
  free_ += bytes;
  free_bytes_ -= bytes;
  return room;
}

}  // namespace qxe
