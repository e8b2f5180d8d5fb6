#include "frame/api/search_checks.h"

#include "frame/base/error_ring.h"
#include "storage/charcode.h"

namespace qxe {

int check_bounds(const char* layer, int ope, const char* value1, const char* value2) {
  constexpr int kCodeBits = 0x7f;
  const int code = ope & kCodeBits;
  const bool two = code == QX_OPE_BETWEEN || code == QX_OPE_WITHIN;
  if ((value1 != nullptr || code == QX_OPE_ISNULL) && (value2 != nullptr || !two)) return 0;
  return report(layer, QX_ERROR_PARAMETER, "Invalid Parameter : Value");
}

int check_sjis(const char* layer) {
  if (getSystemInfoDBCharCode() == QX_CODE_SJIS) return 0;
  return report(layer, QX_ERROR_LOCALE, "Not equal to WS DBCharCode");
}

int check_locale(const char* layer, int localeId) {
  constexpr int kAnyLocale = 99;
  if (localeId == kAnyLocale || convertLocaleID2DBCharCode(localeId) == getSystemInfoDBCharCode()) {
    return 0;
  }
  return report(layer, QX_ERROR_LOCALE, "Invalid Parameter : LocaleID");
}

}  // namespace qxe
