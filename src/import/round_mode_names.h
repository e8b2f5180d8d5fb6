// Words for the rounding modes of decimals, as catalogs and format files use them.
#pragma once

namespace qxe {

/// Mode (QX_ROUND_...) of a word in any case; -1 for another word.
int TransNumericRoundType(const char* word);

/// Word of a mode; empty for an unknown one.
const char* TransNumericRoundType2Str(int mode);

}  // namespace qxe
