#include "search/ordered_sets.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "search/compiler_steps.h"
#include "search/row_parts.h"
#include "search/scan_kernels.h"

namespace qxe {

namespace {

/// Rows of a window. A mark is a byte: two marks in a row do not wait for each other as two bits of
/// one word do.
constexpr int kWindowRows = 16384;
/// From fewer rows than this going through all marks of a window costs more than the rows.
constexpr size_t kFewRows = kWindowRows / 64;
/// Looking a row up in an ordered list costs as much as marking about so many.
constexpr size_t kMarksPerLookup = 64;

bool ascends(RowSpan rows) {
  int disorder = 0;
  for (size_t i = 1; i < rows.size(); ++i) disorder |= int{rows[i - 1] >= rows[i]};  // no jump
  return disorder == 0;
}

/// The head of a list, as long as its rows lie below `limit`, which is taken off.
/// `*ordered` becomes false unless the head ascends and what is left lies behind it.
RowSpan take_below(int limit, RowSpan& list, bool* ordered) {
  const size_t most = std::min<size_t>(list.size(), kWindowRows);
  const auto end = std::lower_bound(list.begin(), list.begin() + static_cast<long>(most), limit);
  const RowSpan head = list.first(static_cast<size_t>(end - list.begin()));
  list = list.subspan(head.size());
  *ordered = *ordered && ascends(head) && (head.empty() || head.back() < limit) &&
             (list.empty() || list.front() >= limit);
  return head;
}

/// A window of rows and a mark for each. Between two uses all marks are 0.
class Window {
 public:
  /// Moves to `first` and the rows behind it, as far as `end`.
  void move(int first, int end) {
    first_ = first;
    limit_ = end - first > kWindowRows ? first + kWindowRows : end;
  }
  int limit() const { return limit_; }
  int size() const { return limit_ - first_; }

  /// Copies the rows that are in `others`, or those that are not.
  int* put_if(bool in, RowSpan rows, RowSpan others, int* out) {
    if (others.empty()) return in ? out : std::copy(rows.begin(), rows.end(), out);
    if (rows.size() * kMarksPerLookup < others.size()) return put_looked_up(in, rows, others, out);
    mark(others);
    const unsigned char flip = in ? 0 : 1;
    const int first = first_;  // which no store below can change
    for (const int row : rows) {
      *out = row;
      out += marks_[row - first] ^ flip;
    }
    unmark(others);
    return out;
  }

  int* put_either(RowSpan a, RowSpan b, int* out, const int* room_end) {
    if (a.size() + b.size() < kFewRows || a.empty() || b.empty()) {
      return std::set_union(a.begin(), a.end(), b.begin(), b.end(), out);
    }
    mark(a);
    mark(b);
    const int words = pack();
    return scan_kernels().put_rows(words_, words, first_, out, room_end);
  }

  int* put_others(RowSpan rows, int* out, const int* room_end) {
    if (rows.size() < kFewRows) return put_gaps(rows, out);
    mark(rows);
    const int words = pack();
    for (int i = 0; i < words; ++i) words_[i] = ~words_[i];
    if (size() % 32 != 0) words_[words - 1] &= (uint32_t{1} << size() % 32) - 1;
    return scan_kernels().put_rows(words_, words, first_, out, room_end);
  }

 private:
  void mark(RowSpan rows) { set_marks(rows, 1); }

  void set_marks(RowSpan rows, unsigned char mark) {
    const int first = first_;  // which no store below can change
    for (const int row : rows) marks_[row - first] = mark;
  }

  void unmark(RowSpan rows) {
    if (rows.size() >= kFewRows) {
      memset(marks_, 0, sizeof marks_);
    } else {
      set_marks(rows, 0);
    }
  }

  /// Turns the marks into bits. Returns how many words they are.
  int pack() {
    pack_hits(marks_, size(), words_);
    memset(marks_, 0, static_cast<size_t>(size()));
    return (size() + 31) / 32;
  }

  static int* put_looked_up(bool in, RowSpan rows, RowSpan others, int* out) {
    auto place = others.begin();
    for (const int row : rows) {
      place = std::lower_bound(place, others.end(), row);
      *out = row;
      out += (place != others.end() && *place == row) == in;
    }
    return out;
  }

  int* put_gaps(RowSpan rows, int* out) const {
    int next = first_;
    const auto put_up_to = [&](int end) {
      std::iota(out, out + (end - next), next);
      out += end - next;
      next = end + 1;
    };
    for (const int row : rows) put_up_to(row);
    put_up_to(limit_);
    return out;
  }

  int first_ = 0;
  int limit_ = 0;
  unsigned char marks_[kWindowRows] = {};
  uint32_t words_[kWindowRows / 32];
};

/// One worker's share: rows `first` to, not including, `end` of the table.
struct Share {
  int first;
  int end;
  RowSpan a;
  RowSpan b;
  int* out;
  int* room_end;
  long kept = 0;
  bool ordered = true;
};

int front_or(RowSpan rows, int end) {
  return rows.empty() ? end : rows.front();
}

/// Calls `put(window, rows of a, rows of b, out)` for each window that holds rows of either.
template <class Put>
void walk(Share& share, const Put& put) {
  Window window;
  int* out = share.out;
  RowSpan a = share.a, b = share.b;
  while (!(a.empty() && b.empty())) {
    const int first = std::min(front_or(a, share.end), front_or(b, share.end));
    share.ordered = first >= share.first && first < share.end;
    if (!share.ordered) return;
    window.move(first, share.end);
    const RowSpan in_a = take_below(window.limit(), a, &share.ordered);
    const RowSpan in_b = take_below(window.limit(), b, &share.ordered);
    if (!share.ordered) return;
    out = put(window, in_a, in_b, out);
  }
  share.kept = out - share.out;
}

void combine(int op, Share& share) {
  walk(share, [&](Window& window, RowSpan a, RowSpan b, int* out) {
    return op == QX_SET_OR ? window.put_either(a, b, out, share.room_end)
                           : window.put_if(op == QX_SET_AND, a, b, out);
  });
}

void complement(Share& share) {
  Window window;
  int* out = share.out;
  RowSpan rows = share.a;
  if (front_or(rows, share.end) < share.first) share.ordered = false;
  for (int first = share.first; first < share.end && share.ordered; first = window.limit()) {
    window.move(first, share.end);
    const RowSpan inside = take_below(window.limit(), rows, &share.ordered);
    // More rows than there are places: one of those to come stands twice.
    const long others = window.size() - static_cast<long>(inside.size());
    if (others > share.room_end - out) share.ordered = false;
    if (share.ordered) out = window.put_others(inside, out, share.room_end);
  }
  share.ordered = share.ordered && rows.empty();
  share.kept = out - share.out;
}

size_t rows_below(int row, RowSpan rows) {
  return static_cast<size_t>(std::lower_bound(rows.begin(), rows.end(), row) - rows.begin());
}

/// Divides the lists where the table is divided, at the rows in `bounds`. False when they turn out
/// not to ascend.
bool divide(const std::vector<int>& bounds, RowSpan a, RowSpan b, std::vector<Share>& shares) {
  size_t at_a = 0, at_b = 0;
  for (size_t i = 0; i + 1 < bounds.size(); ++i) {
    const bool last = i + 2 == bounds.size();
    const size_t end_a = last ? a.size() : rows_below(bounds[i + 1], a);
    const size_t end_b = last ? b.size() : rows_below(bounds[i + 1], b);
    if (bounds[i] > bounds[i + 1] || at_a > end_a || at_b > end_b) return false;
    shares.push_back({bounds[i], bounds[i + 1], a.subspan(at_a, end_a - at_a),
                      b.subspan(at_b, end_b - at_b), nullptr, nullptr});
    at_a = end_a;
    at_b = end_b;
  }
  return true;
}

/// Gives each share its room, works on all and puts the results together. Null if they are not
/// ordered. `room_for(share)` is the most rows that it can have.
template <class RoomFor, class Work>
std::unique_ptr<TSetArray> worked(std::vector<Share>& shares, const RoomFor& room_for,
                                  const Work& work) {
  long total = 0;
  for (const Share& share : shares) total += room_for(share);
  auto room = std::make_unique<TSetArray>(static_cast<int>(total), false);
  int* out = room->PIntAr();
  for (Share& share : shares) {
    share.out = out;
    share.room_end = out += room_for(share);
  }
  run_step(QX_MPP_TOBITMAP, static_cast<int>(shares.size()),
           [&](int worker) { work(shares[static_cast<size_t>(worker)]); });
  std::vector<RowPart> parts;
  for (const Share& share : shares) {
    if (!share.ordered) return nullptr;
    parts.push_back({share.out, share.kept});
  }
  return packed_parts(std::move(room), parts);
}

long size_of(RowSpan rows) {
  return static_cast<long>(rows.size());
}

}  // namespace

std::unique_ptr<TSetArray> combine_ordered(int op, int totalRows, RowSpan a, RowSpan b) {
  if (op == QX_SET_AND && a.size() > b.size()) std::swap(a, b);  // marking costs less than keeping
  const RowSpan longer = a.size() > b.size() ? a : b;
  if (size_of(a) + size_of(b) > INT32_MAX) return nullptr;
  const int workers =
      ENG->n_threads_for_elements(size_of(a) + size_of(b), 2 * ENG->rows_per_worker());
  std::vector<int> bounds(1, 1);
  for (int i = 1; i < workers; ++i) {
    bounds.push_back(longer[static_cast<size_t>(even_slice(size_of(longer), workers, i).begin)]);
  }
  bounds.push_back(totalRows + 1);
  std::vector<Share> shares;
  if (!divide(bounds, a, b, shares)) return nullptr;
  return worked(
      shares,
      [&](const Share& share) {
        return size_of(share.a) + (op == QX_SET_OR ? size_of(share.b) : 0);
      },
      [&](Share& share) { combine(op, share); });
}

std::unique_ptr<TSetArray> complement_ordered(int totalRows, RowSpan rows) {
  const int workers = ENG->n_threads_for_elements(totalRows, 4 * ENG->rows_per_worker());
  std::vector<int> bounds;
  for (int i = 0; i < workers; ++i) {
    bounds.push_back(static_cast<int>(even_slice(totalRows, workers, i).begin) + 1);
  }
  bounds.push_back(totalRows + 1);
  std::vector<Share> shares;
  if (!divide(bounds, rows, {}, shares)) return nullptr;
  for (const Share& share : shares) {
    if (size_of(share.a) > share.end - share.first) return nullptr;  // some stand twice
  }
  return worked(
      shares, [](const Share& share) { return share.end - share.first - size_of(share.a); },
      complement);
}

}  // namespace qxe
