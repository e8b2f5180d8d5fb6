// The distinct texts of a column's share, each with a number in order of first appearance. A column
// is converted once per distinct text, and rows are 4-byte numbers from the start.
#pragma once

#include <stdint.h>

#include <span>
#include <vector>

#include "import/cell_scanner.h"

namespace qxe {

class TextTable : NonCopyable {
 public:
  /// Cells that one call takes at most.
  static constexpr int kMaxCells = 256;

  /// Holds the empty text, as number 0.
  TextTable();

  /// Numbers of the texts of `cells`. Those that are new come back, in the order of their numbers;
  /// these copies are terminated and stay where they are. A cell ends at its first NUL, and 8 bytes
  /// from its start must be readable.
  std::span<const Cell> number(std::span<const Cell> cells, int* numbers);

  /// Ends the numbering and gives back what only it needs; the texts stay.
  void close() { slots_.reset(); }

 private:
  struct Key {
    uint64_t hash;  // of texts of up to 8 bytes one to one
    int size;
  };

  /// What `hash` belongs to: a short text, its size in the top byte and its number below, or the
  /// place of a long text's record. 0 is a free slot.
  struct Slot {
    uint64_t hash;
    uint64_t holds;
  };

  /// A long text; it follows, terminated.
  struct Record {
    int number;
    int size;
    char* text() { return reinterpret_cast<char*>(this + 1); }
    const char* text() const { return reinterpret_cast<const char*>(this + 1); }
  };

  static constexpr int kShortText = 8;
  static constexpr size_t kLineSlots = 64 / sizeof(Slot);
  static constexpr int kSizeShift = 56;
  static constexpr int kPageBits = 21;

  static Key key_of(const Cell& cell);
  static bool is_short(uint64_t holds) { return holds >> kSizeShift != 0; }
  size_t slot_count() const { return size_t{1} << (64 - shift_); }
  size_t home_of(uint64_t hash) const { return static_cast<size_t>(hash >> shift_); }
  /// Where to look after `tried` places: first round the cache line, then in the next one.
  size_t next_place(size_t place, size_t tried) const {
    const size_t line = tried % kLineSlots == 0 ? place + kLineSlots : place;
    return (line & (slot_count() - kLineSlots)) | ((place + 1) % kLineSlots);
  }
  Record& record_at(uint64_t place) const {
    char* const page = pages_[static_cast<size_t>(place >> kPageBits)].get();
    return *reinterpret_cast<Record*>(page + (place & ((uint64_t{1} << kPageBits) - 1)));
  }
  /// Number of the text in a slot if it is this one, else -1.
  int number_in(const Slot& slot, const Key& key, const char* text) const;
  int number_of(const Key& key, const char* text);
  int add(const Key& key, const char* text, Slot& slot);
  uint64_t store(const Key& key, const char* text);
  void prefetch_text(const Key& key) const;
  void number_ahead(std::span<const Cell> cells, int* numbers);
  void grow();

  Block<Slot> slots_;
  int shift_;  // 64 less the binary logarithm of the number of slots
  int count_ = 1;
  std::vector<Block<char>> pages_;  // texts
  long page_size_ = 0;              // of the last page
  long page_used_ = 0;
  std::vector<Cell> added_;  // by the present call
};

}  // namespace qxe
