// The distinct texts of a column's share, each with a number in order of first appearance. A column
// is converted once per distinct text, and rows are 4-byte numbers from the start.
#pragma once

#include <stdint.h>

#include <span>
#include <vector>

#include "import/cell_scanner.h"
#include "import/growing_block.h"

namespace qxe {

class TextTable : NonCopyable {
 public:
  /// Cells that one call takes at most.
  static constexpr int kMaxCells = 512;

  /// Holds the empty text, as number 0.
  TextTable();

  /// Numbers of the texts of `cells`, which enter when they are new. A cell ends at its first NUL,
  /// and 8 bytes from its start must be readable.
  void number(std::span<const Cell> cells, int* numbers);

  /// Ends the numbering and gives back what only it needs; texts and numbers stay.
  void close() { slots_.reset(); }

  int count() const { return static_cast<int>(texts_.size()); }
  /// A text, terminated; stays where it is.
  const Cell& text(int number) const { return texts_[number]; }

 private:
  // A text of up to 8 bytes is its own key and needs no further look; of a longer one the key is a
  // hash, and the text decides.
  struct Slot {
    uint64_t key;
    int size;  // 0: free
    int number;
  };

  struct Key {
    uint64_t key;
    int size;
  };

  static Key key_of(Cell cell);
  size_t slot_of(uint64_t key) const { return static_cast<size_t>((key * kSpread) >> shift_); }
  bool holds(const Slot& slot, const Key& key, const char* text) const;
  int number_of(const Key& key, const char* text);
  int add(Slot& slot, const Key& key, const char* text);
  void prefetch_texts(std::span<const Key> keys) const;
  void grow();
  char* room_for(long bytes);

  static constexpr uint64_t kSpread = 0x9e3779b97f4a7c15;

  Block<Slot> slots_;
  int shift_ = 0;  // 64 less the binary logarithm of the number of slots
  long used_ = 0;
  GrowingBlock<Cell> texts_;
  std::vector<Block<char>> pages_;  // the texts
  char* free_ = nullptr;            // rest of the last page
  long free_bytes_ = 0;
  long page_bytes_ = 2048;
};

}  // namespace qxe
