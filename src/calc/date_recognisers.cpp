#include "calc/date_integer_forms.h"
#include "storage/strings.h"

namespace qxe {

namespace {

const char* skip_blanks(const char* at) {
  while (*at == ' ' || *at == '\t') ++at;
  return at;
}

/// Moves `at` over a number of `least` to `most` digits, all that stand there.
bool take_number(const char*& at, int least, int most, int* number) {
  const char* const first = at;
  int value = 0;
  while (is_digit(*at) && at - first < most) value = value * 10 + (*at++ - '0');
  *number = value;
  return at - first >= least && !is_digit(*at);
}

bool take(const char*& at, char c) {
  if (*at != c) return false;
  ++at;
  return true;
}

}  // namespace

bool CheckDateStr2(const _stdate& date) {
  bool bad = date.year < 1900 || date.year > 2099;
  getDateField(date, &bad);
  return !bad;
}

bool CheckDateStr(const char* text, const char** end, int* date) {
  const char* at = skip_blanks(text);
  _stdate fields{};
  if (!take_number(at, 4, 4, &fields.year) || !take(at, '/') ||
      !take_number(at, 1, 2, &fields.month) || !take(at, '/') ||
      !take_number(at, 1, 2, &fields.day) || !CheckDateStr2(fields)) {
    return false;
  }
  *end = at;
  *date = fields.year * 10000 + fields.month * 100 + fields.day;
  return true;
}

bool CheckTimeStr(const char* text, int* time) {
  const char* at = skip_blanks(text);
  int hour = 0;
  int minute = 0;
  int second = 0;
  if (!take_number(at, 1, 2, &hour) || !take(at, ':') || !take_number(at, 1, 2, &minute)) {
    return false;
  }
  if (take(at, ':') && !take_number(at, 1, 2, &second)) return false;
  if (*skip_blanks(at) != '\0') return false;
  *time = hour * 10000 + minute * 100 + second;
  return true;
}

bool CheckDateTimeStr(const char* text, int* date, int* time) {
  const char* end = nullptr;
  if (!CheckDateStr(text, &end, date)) return false;
  end = skip_blanks(end);
  if (*end == '\0') {
    *time = 0;
    return true;
  }
  return CheckTimeStr(end, time);
}

}  // namespace qxe
