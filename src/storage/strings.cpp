#include "storage/strings.h"

#include <limits.h>
#include <locale.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

#include "storage/charcode.h"
#include "storage/family.h"
#include "tables/table_collection.h"

namespace qxe {

namespace {

constexpr size_t kNameSize = 256;       // with the terminator
constexpr size_t kTailSearched = 4096;  // DelLastSpc looks no further
constexpr std::string_view kNotInNames = " !%&()*+-./:;?[\\]";
constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

/// Calls `body` for every single-byte character; multi-byte ones are passed over whole, a cut one
/// at the end of the text too.
template <class Body>
void for_each_single_byte(int code, char* text, Body body) {
  const size_t length = strlen(text);
  for (size_t i = 0; i < length;) {
    const int bytes = countMultiBytes(code, static_cast<unsigned char>(text[i]));
    if (bytes == 1) body(text + i);
    i += static_cast<size_t>(bytes);
  }
}

void tell(bool* bad, bool value) {
  if (bad != nullptr) *bad = value;
}

/// A number at the start of a text and the place behind it, which is null when there is no number.
template <class Number>
struct Prefix {
  Number value;
  const char* end;
};

/// White space and a sign before a number.
struct Sign {
  bool negative;
  const char* digits;  // the place behind
};

Sign read_sign(const char* begin, const char* end) {
  while (begin < end && is_white(*begin)) ++begin;
  if (begin < end && (*begin == '-' || *begin == '+')) return {*begin == '-', begin + 1};
  return {false, begin};
}

/// Beyond 32 bits the value is some other one beyond 32 bits.
Prefix<long> read_int(std::string_view text) {
  const char* const end = text.data() + text.size();
  const auto [negative, digits] = read_sign(text.data(), end);
  const char* at = digits;
  long value = 0;
  for (; at < end && is_digit(*at); ++at) {
    if (value <= INT_MAX) value = value * 10 + (*at - '0');
  }
  return {negative ? -value : value, at > digits ? at : nullptr};
}

/// Whether a decimal number could go on with `c` behind its digits.
bool extends_decimal(char c) {
  return is_digit(c) || c == '.' || (c | 0x20) == 'e' || (c | 0x20) == 'x';
}

/// Moves `at` over digits up to `end` and appends them to `number`; returns how many.
long append_digits(const char*& at, const char* end, long* number) {
  const char* const first = at;
  for (; at < end && is_digit(*at); ++at) *number = *number * 10 + (*at - '0');
  return at - first;
}

/// Digits with at most one point and no more than fifteen digits: digits and power of ten are then
/// exact doubles, and so their quotient is the nearest double. `end` is null for any other number.
Prefix<double> read_short_decimal(const char* begin, const char* end) {
  static constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  constexpr long kMostDigits = 15;
  const char* const last = begin + std::min(end - begin, kMostDigits + 1);  // of digits and point
  const char* at = begin;
  long number = 0;
  long digits = append_digits(at, last, &number);
  long decimals = 0;
  if (at < last && *at == '.') {
    decimals = append_digits(++at, last, &number);
    digits += decimals;
  }
  const bool goes_on = at < end && extends_decimal(*at);
  if (digits == 0 || digits > kMostDigits || goes_on) return {0.0, nullptr};
  return {static_cast<double>(number) / kPowers[decimals], at};
}

/// The system's conversion, for what is rare: hexadecimal digits, and numbers too large or too
/// small for a double.
Prefix<double> read_by_system(const char* begin, const char* end) {
  static const locale_t plain_locale = newlocale(LC_ALL_MASK, "C", nullptr);
  const std::string text(begin, end);
  char* behind = nullptr;
  const double value = strtod_l(text.c_str(), &behind, plain_locale);
  const long used = behind - text.c_str();
  return {value, used > 0 ? begin + used : nullptr};
}

/// A number without a sign: the decimal forms, "inf", "infinity" and "nan" in any case.
Prefix<double> read_unsigned_double(const char* begin, const char* end) {
  if (const Prefix<double> number = read_short_decimal(begin, end); number.end != nullptr) {
    return number;
  }
  if (begin < end && *begin == '-') return {0.0, nullptr};  // behind another sign
  const bool hexadecimal = end - begin > 2 && begin[0] == '0' && (begin[1] | 0x20) == 'x';
  if (hexadecimal) return read_by_system(begin, end);
  double value = 0.0;
  const auto [behind, status] = std::from_chars(begin, end, value);
  if (status == std::errc::result_out_of_range) return read_by_system(begin, end);
  return {value, status == std::errc() ? behind : nullptr};
}

Prefix<double> read_double(std::string_view text) {
  const char* const end = text.data() + text.size();
  const auto [negative, begin] = read_sign(text.data(), end);
  const auto [value, behind] = read_unsigned_double(begin, end);
  return {negative && behind != nullptr ? -value : value, behind};
}

/// Whether a checked text is a number alone: no tab before it and only blanks behind.
bool is_alone(std::string_view text, const char* behind) {
  if (behind == nullptr || text.front() == '\t') return false;
  return std::all_of(behind, text.data() + text.size(), [](char c) { return c == ' '; });
}

}  // namespace

size_t qxe_strlcpy(char* destination, const char* source, size_t size) {
  const size_t length = strlen(source);
  if (size > 0) {
    const size_t copied = std::min(length, size - 1);
    memcpy(destination, source, copied);
    destination[copied] = '\0';
  }
  return length;
}

int Str2Int(std::string_view text, bool strict, bool* bad) {
  tell(bad, false);
  if (text.empty()) return QX_NULL_INT;
  const Prefix<long> number = read_int(text);
  const bool fits = number.value >= -INT_MAX && number.value <= INT_MAX;
  if (strict && !(fits && is_alone(text, number.end))) {
    tell(bad, true);
    return QX_NULL_INT;
  }
  return fits ? static_cast<int>(number.value) : QX_NULL_INT;
}

double Str2Double(std::string_view text, bool strict, bool* bad) {
  tell(bad, false);
  if (text.empty()) return kNullDouble;
  const Prefix<double> number = read_double(text);
  if (strict && !(std::isfinite(number.value) && is_alone(text, number.end))) {
    tell(bad, true);
    return kNullDouble;
  }
  return Family<TDoubleArray>::normalized(number.value);
}

std::string_view stripSpace(std::string_view text, char* room) {
  const size_t first = text.find_first_not_of(" ,");
  if (first == std::string_view::npos) return {};
  text.remove_prefix(first);
  if (text.find(',') == std::string_view::npos) return text;
  char* const end = std::remove_copy(text.begin(), text.end(), room, ',');
  return {room, static_cast<size_t>(end - room)};
}

bool ToFileName(char* name) {
  const size_t length = strlen(name);
  if (length == 0 || length >= kNameSize) return false;
  for_each_single_byte(getSystemInfoDBCharCode(), name, [](char* at) {
    if (kNotInNames.find(*at) != std::string_view::npos) *at = '_';
  });
  return true;
}

bool verifySeedName(const char* seed, char* out) {
  if (qxe_strlcpy(out, seed, kNameSize) >= kNameSize || !ToFileName(out)) return false;
  if (TTableCollection::m_nDisableTrimUntilSharp) return true;
  char* cut = nullptr;
  for_each_single_byte(getSystemInfoDBCharCode(), out, [&](char* at) {
    if (cut == nullptr && at > out && at[0] == '_' && at[1] == '#') cut = at;
  });
  if (cut != nullptr) *cut = '\0';
  return true;
}

bool DelLastSpc(char* text) {
  const size_t searched = strnlen(text, kTailSearched);
  size_t length = searched;
  while (length > 0 && text[length - 1] == ' ') --length;
  if (length == searched) return false;
  text[length] = '\0';
  return true;
}

void CutWhiteSpace(char* text) {
  const std::string_view whole = text;
  const size_t first = whole.find_first_not_of(kWhiteSpace);
  const size_t length =
      first == std::string_view::npos ? 0 : whole.find_last_not_of(kWhiteSpace) - first + 1;
  if (length > 0) memmove(text, text + first, length);
  text[length] = '\0';
}

void UpperCase(int code, char* text) {
  for_each_single_byte(code, text, [](char* at) {
    if (*at >= 'a' && *at <= 'z') *at = static_cast<char>(*at - 'a' + 'A');
  });
}

void AnsiUpperCase(char* text) {
  UpperCase(getSystemInfoDBCharCode(), text);
}

}  // namespace qxe
