// A cell as reading calls give it, written as text.
#pragma once

namespace qxe {

/// Bytes of the longest cell, and of the longest text of one.
constexpr int kCellText = 4096;

/// Writes a cell of data type `type`, a decimal behind its info, into `text` (kCellText bytes); ""
/// for a decimal without a text.
void write_cell_text(int type, const char* cell, char* text);

}  // namespace qxe
