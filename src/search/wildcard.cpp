#include "search/wildcard.h"

#include "frame/base/error_ring.h"
#include "frame/base/exception.h"
#include "storage/charcode.h"

namespace qxe {

namespace {

constexpr char kAnyRun = '*';
constexpr char kAnyByte = '?';
constexpr char kEscape = '\\';

bool is_wild(char byte) {
  return byte == kAnyRun || byte == kAnyByte;
}

/// Brings a pattern to normal form, part by part.
class Normalizer {
 public:
  Normalizer(const char* pattern, bool multi_byte, char* out)
      : next_(pattern), multi_byte_(multi_byte), out_(out) {}

  void run() {
    while (*next_ != '\0') {
      if (is_wild(*next_)) {
        put_group();
      } else if (*next_ == kEscape) {
        put_escaped();
      } else {
        put_character();
      }
    }
    *out_ = '\0';
  }

 private:
  void put_group() {
    bool any_run = false;
    for (; is_wild(*next_); ++next_) {
      if (*next_ == kAnyByte) *out_++ = kAnyByte;
      any_run |= *next_ == kAnyRun;
    }
    if (any_run) *out_++ = kAnyRun;
  }

  void put_escaped() {
    const char escaped = next_[1];
    if (!is_wild(escaped) && escaped != kEscape) {
      throw CQXException(report("WildCard", QX_ERROR_PARAMETER, "Invalid Parameter : Pattern"));
    }
    *out_++ = kEscape;
    *out_++ = escaped;
    next_ += 2;
  }

  /// A trailing byte escapes nothing. A character that the pattern's end cuts has the bytes it has.
  void put_character() {
    int bytes = 1;
    if (multi_byte_) {
      bytes = countMultiBytes(getSystemInfoDBCharCode(), static_cast<unsigned char>(*next_));
    }
    for (; bytes > 0 && *next_ != '\0'; --bytes) {
      if (*next_ == kEscape) *out_++ = kEscape;
      *out_++ = *next_++;
    }
  }

  const char* next_;
  const bool multi_byte_;
  char* out_;
};

/// The byte that a text must have where the plain part of a pattern at `pattern` begins.
char plain_byte(const char* pattern) {
  return *pattern == kEscape ? pattern[1] : *pattern;
}

/// Whether the part of a pattern at `pattern`, not a star, stands for the byte at `text`; the ends
/// stand for each other.
bool is_byte_of(const char* pattern, const char* text) {
  return *pattern == kAnyByte ? *text != '\0' : plain_byte(pattern) == *text;
}

/// The first place from `text` on where what stands behind a star may begin, or null.
const char* first_start(const char* behind_star, const char* text) {
  return is_wild(*behind_star) ? text : strchr(text, plain_byte(behind_star));
}

}  // namespace

WildCard::WildCard(const char* pattern, int multiByte)
    : pattern_(make_block<char>(static_cast<long>(2 * strlen(pattern) + 1))) {
  Normalizer(pattern, multiByte != 0, pattern_.get()).run();
}

bool WildCard::match(const char* text) const {
  return wildcard_do_exec(pattern_.get(), text);
}

std::string WildCard::prefix() const {
  std::string prefix;
  for (const char* next = pattern_.get(); *next != '\0' && !is_wild(*next); ++next) {
    if (*next == kEscape) ++next;
    prefix += *next;
  }
  return prefix;
}

std::string WildCard::longest_piece() const {
  std::string longest;
  std::string piece;
  for (const char* next = pattern_.get();; ++next) {
    if (*next == '\0' || is_wild(*next)) {
      if (piece.size() > longest.size()) longest.swap(piece);
      piece.clear();
      if (*next == '\0') return longest;
    } else {
      if (*next == kEscape) ++next;
      piece += *next;
    }
  }
}

bool wildcard_do_exec(const char* pattern, const char* text) {
  // What stands between two stars is best found as early as can be: what follows then has the most
  // text left. So only the last star is ever gone back to.
  const char* behind_star = nullptr;
  const char* start = nullptr;  // of the text that is tried behind it
  for (;;) {
    if (*pattern == kAnyRun) {
      behind_star = ++pattern;
      if (*pattern == '\0') return true;
      start = first_start(behind_star, text);
    } else if (is_byte_of(pattern, text)) {
      if (*text == '\0') return true;
      pattern += *pattern == kEscape ? 2 : 1;
      ++text;
      continue;
    } else {
      if (behind_star == nullptr || *start == '\0') return false;
      pattern = behind_star;
      start = first_start(behind_star, start + 1);
    }
    if (start == nullptr) return false;
    text = start;
  }
}

}  // namespace qxe
