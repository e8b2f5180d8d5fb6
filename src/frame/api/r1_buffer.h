// Results of the convenience forms that return text.
#pragma once

namespace qxe {

/// Overwritten by the next convenience form; safe under the engine lock only.
extern char gBuf[4096];

}  // namespace qxe
