// Reading and writing decimal text.
#include <string.h>

#include <algorithm>
#include <optional>

#include "rounding.h"

namespace qxe {
namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

const char* skip_blanks(const char* text) {
  while (*text == ' ' || *text == '\t') ++text;
  return text;
}

/// A number's text taken apart, so that its digits are evaluated once the exponent is known.
struct NumberText {
  bool negative = false;
  const char* digits = nullptr;  // the first digit that is not 0; a point may follow among them
  long count = 0;                // digits from there on, 0 for a zero
  long exponent = 0;             // power of ten of the last digit
  const char* end = nullptr;     // the first byte behind the number
};

/// Reads the digits and the point; false when there is no digit at all.
bool scan_digits(const char* text, NumberText& number) {
  bool any = false;
  bool point = false;
  for (;; ++text) {
    if (*text == '.' && !point) {
      point = true;
      continue;
    }
    if (!is_digit(*text)) break;
    any = true;
    if (number.count == 0 && *text != '0') number.digits = text;
    if (number.digits != nullptr) ++number.count;
    if (point) --number.exponent;
  }
  number.end = text;
  return any;
}

/// Reads an exponent, which takes at least one digit; nothing is read otherwise.
void scan_exponent(NumberText& number) {
  constexpr long kBeyondEveryText = 1000L * 1000 * 1000 * 1000 * 1000;
  const char* at = number.end;
  if (*at != 'e' && *at != 'E') return;
  ++at;
  const bool negative = *at == '-';
  if (*at == '-' || *at == '+') ++at;
  if (!is_digit(*at)) return;
  long exponent = 0;
  for (; is_digit(*at); ++at) exponent = std::min(exponent * 10 + (*at - '0'), kBeyondEveryText);
  number.exponent += negative ? -exponent : exponent;
  number.end = at;
}

std::optional<NumberText> scan_number(const char* text) {
  NumberText number;
  number.negative = *text == '-';
  if (*text == '-' || *text == '+') ++text;
  if (!scan_digits(text, number)) return std::nullopt;
  scan_exponent(number);
  return number;
}

char next_digit(const char*& at) {
  if (*at == '.') ++at;
  return *at++;
}

/// The integer of the next `count` digits, at most 38.
Int128 read_digits(const char*& at, long count) {
  constexpr long kDigitsOfLong = 18;
  Int128 integer = 0;
  while (count > 0) {
    const long taken = std::min(count, kDigitsOfLong);
    long part = 0;
    for (long i = 0; i < taken; ++i) part = part * 10 + (next_digit(at) - '0');
    integer = integer * power_of_ten(taken) + part;
    count -= taken;
  }
  return integer;
}

/// The tail that `count` digits make behind the last digit kept.
Tail read_tail(const char* at, long count) {
  if (count == 0) return Tail::kNone;
  const char first = next_digit(at);
  bool more = false;
  for (long i = 1; i < count && !more; ++i) more = next_digit(at) != '0';
  if (first == '5') return more ? Tail::kAboveHalf : Tail::kHalf;
  if (first > '5') return Tail::kAboveHalf;
  return first > '0' || more ? Tail::kBelowHalf : Tail::kNone;
}

int evaluate(const NumberText& number, const NumericInfo& info, Numeric* result) {
  if (number.count == 0) return store(0, result);
  const long digits = number.exponent + info.scale;  // behind the text's last digit; negative: cut
  if (number.count + digits > kMaxDigits) return fail(QX_NUMERIC_OVERFLOW, result);
  const long kept = number.count + std::min(digits, 0L);
  const char* at = number.digits;
  Int128 integer = read_digits(at, kept);
  if (digits > 0) integer *= power_of_ten(digits);
  const Tail tail = kept < 0 ? Tail::kBelowHalf : read_tail(at, number.count - kept);
  if (rounds_away(info.rounding, number.negative, integer % 2 != 0, tail)) ++integer;
  return store(number.negative ? -integer : integer, result);
}

/// Writes the digits of `value`, at least `least`, up to `end`; gives their begin.
char* write_digits(UInt128 value, int least, char* end) {
  constexpr unsigned long kNineteenDigits = 10'000'000'000'000'000'000UL;
  char* begin = end;
  const auto put = [&begin](unsigned long& rest) {
    *--begin = static_cast<char>('0' + rest % 10);
    rest /= 10;
  };
  while (value >> 64 != 0) {
    auto rest = static_cast<unsigned long>(value % kNineteenDigits);
    value /= kNineteenDigits;
    for (int i = 0; i < 19; ++i) put(rest);
  }
  auto rest = static_cast<unsigned long>(value);
  while (rest != 0 || end - begin < least) put(rest);
  return begin;
}

/// Writes `integer * 10^-scale` with its terminator; nothing when `size` bytes are too few.
int write_number(Int128 integer, int scale, char* buffer, int size) {
  char digits[kMaxDigits + 1];
  char* const end = digits + sizeof digits;
  const bool negative = integer < 0;
  const char* begin =
      write_digits(static_cast<UInt128>(negative ? -integer : integer), scale + 1, end);
  if (negative + (end - begin) + (scale > 0) >= size) return QX_NUMERIC_BAD_ARGUMENT;
  const auto whole = static_cast<size_t>(end - begin - scale);
  if (negative) *buffer++ = '-';
  memcpy(buffer, begin, whole);
  buffer += whole;
  if (scale > 0) *buffer++ = '.';
  memcpy(buffer, begin + whole, static_cast<size_t>(scale));
  buffer[scale] = '\0';
  return QX_NUMERIC_DONE;
}

}  // namespace
}  // namespace qxe

int RQXNumericStr2Num(const char* text, const NumericInfo* info, Numeric* result, char** rest) {
  const auto read_up_to = [rest](const char* end) {
    if (rest != nullptr) *rest = const_cast<char*>(end);
  };
  read_up_to(text);
  if (!qxe::is_valid(*info)) return qxe::fail(QX_NUMERIC_BAD_ARGUMENT, result);
  const char* begin = qxe::skip_blanks(text);
  if (*begin == '\0') {
    read_up_to(begin);
    return RQXNumericSetNan(result);
  }
  const auto number = qxe::scan_number(begin);
  if (!number) return qxe::fail(QX_NUMERIC_BAD_ARGUMENT, result);
  read_up_to(number->end);
  return qxe::evaluate(*number, *info, result);
}

int RQXNumericNum2Str(const Numeric* value, const NumericInfo* info, int scale, int rounding,
                      char* buffer, int size) {
  if (size < 1) return QX_NUMERIC_BAD_ARGUMENT;
  *buffer = '\0';
  const NumericInfo wanted{scale == -1 ? info->scale : scale,
                           rounding == -1 ? info->rounding : rounding};
  Numeric shown;
  const int status = RQXNumericRescale(value, info, &wanted, &shown);
  if (status != QX_NUMERIC_DONE) return status;
  return qxe::write_number(qxe::load(shown), wanted.scale, buffer, size);
}
