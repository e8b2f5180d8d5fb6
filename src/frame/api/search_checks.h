// What every form of a search or find checks before it: a negative status after logging under
// `layer`, else 0.
#pragma once

namespace qxe {

/// The bounds that operator `ope` reads must be given.
int check_bounds(const char* layer, int ope, const char* value1, const char* value2);

/// The database's strings must be in Shift_JIS, or in the code of a locale; 99 means any.
int check_sjis(const char* layer);
int check_locale(const char* layer, int localeId);

}  // namespace qxe
