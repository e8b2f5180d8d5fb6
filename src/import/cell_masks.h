// Where cells and lines end in delimited text, as bit masks: the part of parsing that vector
// instructions do, chosen at run time.
#pragma once

#include <stdint.h>

#include <span>

namespace qxe {

/// Bit i is byte i of a block of 64.
struct CellMasks {
  uint64_t stops;  // separators and line feeds
  uint64_t line_feeds;
  uint64_t quotes;
};

constexpr int kMaskBlock = 64;

/// Masks of `blocks` blocks from `text` on.
void find_cell_masks(const char* text, int blocks, std::span<const char> separators,
                     CellMasks* out);

}  // namespace qxe
