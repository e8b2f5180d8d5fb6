#include "import/text_table.h"

#include <algorithm>
#include <utility>

#include "import/digits.h"

namespace qxe {

namespace {

constexpr int kFirstSlotBits = 6;
constexpr long kFirstPage = 2048;
// From here on slots do not stay in the first level cache, and memory is fetched ahead.
constexpr size_t kPrefetchFrom = 16384;

// Each step is one to one for each of its arguments.
uint64_t mix(uint64_t hash, uint64_t word) {
  hash = (hash ^ word) * 0xd6e8feb86659fd93;
  return hash ^ (hash >> 32);
}

/// The same bytes; both longer than 8, of one size.
bool same_long_text(const char* left, const char* right, int size) {
  const char* const left_last = left + size - 8;
  const char* const right_last = right + size - 8;
  for (; left < left_last; left += 8, right += 8) {
    if (load_word(left) != load_word(right)) return false;
  }
  return load_word(left_last) == load_word(right_last);
}

}  // namespace

TextTable::TextTable()
    : slots_(make_cleared_block<Slot>(1L << kFirstSlotBits)), shift_(64 - kFirstSlotBits) {}

TextTable::Key TextTable::key_of(const Cell& cell) {
  if (cell.size == 0) return {0, 0};
  uint64_t hash = 0;
  uint64_t zeros = 0;
  uint64_t last = 0;
  if (cell.size <= kShortText) {
    const int unused = 64 - 8 * cell.size;
    last = load_word(cell.text) << unused >> unused;
    zeros = zero_bytes(last | ~(~uint64_t{0} >> unused));
  } else {
    const char* const last_word = cell.text + cell.size - 8;
    for (const char* place = cell.text; place < last_word; place += 8) {
      const uint64_t word = load_word(place);
      zeros |= zero_bytes(word);
      hash = mix(hash, word);
    }
    last = load_word(last_word);
    zeros |= zero_bytes(last);
  }
  if (zeros != 0) return key_of({cell.text, static_cast<int>(strlen(cell.text))});
  return {mix(hash, last), cell.size};
}

// The long text that will be compared, most of them in two cache lines. Inlined by force, as below:
// gcc takes a function that only fetches ahead for one without effect and drops the call.
__attribute__((always_inline)) inline void TextTable::prefetch_text(const Key& key) const {
  const Slot& slot = slots_[home_of(key.hash)];
  if (slot.hash != key.hash || slot.holds == 0 || is_short(slot.holds)) return;
  const Record& record = record_at(slot.holds);
  __builtin_prefetch(&record);
  __builtin_prefetch(record.text() + key.size);
}

std::span<const Cell> TextTable::number(std::span<const Cell> cells, int* numbers) {
  added_.clear();
  if (slot_count() < kPrefetchFrom) {
    for (size_t i = 0; i < cells.size(); ++i) {
      numbers[i] = number_of(key_of(cells[i]), cells[i].text);
    }
  } else {
    number_ahead(cells, numbers);
  }
  return added_;
}

// Each cell is on its way through three stations: its slot is asked for, its text is asked for, it
// gets its number.
__attribute__((always_inline)) inline void TextTable::number_ahead(std::span<const Cell> cells,
                                                                   int* numbers) {
  constexpr size_t kStep = 16;
  Key keys[kMaxCells];
  const size_t count = cells.size();
  for (size_t i = 0; i < count + 2 * kStep; ++i) {
    if (i < count) {
      keys[i] = key_of(cells[i]);
      __builtin_prefetch(&slots_[home_of(keys[i].hash)]);
    }
    if (i - kStep < count) prefetch_text(keys[i - kStep]);
    const size_t done = i - 2 * kStep;
    if (done < count) numbers[done] = number_of(keys[done], cells[done].text);
  }
}

int TextTable::number_of(const Key& key, const char* text) {
  if (key.size == 0) return 0;
  for (size_t place = home_of(key.hash), tried = 1;; place = next_place(place, tried++)) {
    Slot& slot = slots_[place];
    if (slot.holds == 0) return add(key, text, slot);
    const int number = number_in(slot, key, text);
    if (number >= 0) return number;
  }
}

inline int TextTable::number_in(const Slot& slot, const Key& key, const char* text) const {
  if (slot.hash != key.hash) return -1;
  if (is_short(slot.holds)) {
    const bool same = slot.holds >> kSizeShift == static_cast<uint64_t>(key.size);
    return same ? static_cast<int>(slot.holds) : -1;
  }
  const Record& record = record_at(slot.holds);
  const bool same = record.size == key.size && same_long_text(record.text(), text, key.size);
  return same ? record.number : -1;
}

int TextTable::add(const Key& key, const char* text, Slot& slot) {
  const uint64_t place = store(key, text);
  const uint64_t size_and_number =
      static_cast<uint64_t>(key.size) << kSizeShift | static_cast<uint64_t>(count_);
  slot = {key.hash, key.size <= kShortText ? size_and_number : place};
  if (static_cast<size_t>(count_) * 2 > slot_count()) grow();
  return count_++;
}

uint64_t TextTable::store(const Key& key, const char* text) {
  const long bytes = (static_cast<long>(sizeof(Record)) + key.size + 8) & ~7L;  // terminated
  if (page_used_ + bytes > page_size_) {
    page_size_ = std::clamp(page_size_ * 2, kFirstPage + bytes, 1L << kPageBits);
    pages_.push_back(make_block<char>(page_size_));
    page_used_ = 8;  // place 0 is none's
  }
  const uint64_t place =
      (static_cast<uint64_t>(pages_.size() - 1) << kPageBits) + static_cast<uint64_t>(page_used_);
  page_used_ += bytes;
  Record& record = record_at(place);
  record.number = count_;
  record.size = key.size;
  memcpy(record.text(), text, static_cast<size_t>(key.size));
  record.text()[key.size] = '\0';
  added_.push_back({record.text(), key.size});
  return place;
}

// The slots keep about their order, so both tables are walked once.
void TextTable::grow() {
  const size_t old_count = slot_count();
  const Block<Slot> old =
      std::exchange(slots_, make_cleared_block<Slot>(static_cast<long>(old_count) * 2));
  --shift_;
  for (size_t i = 0; i < old_count; ++i) {
    if (old[i].holds == 0) continue;
    size_t place = home_of(old[i].hash);
    for (size_t tried = 1; slots_[place].holds != 0;) place = next_place(place, tried++);
    slots_[place] = old[i];
  }
}

}  // namespace qxe
