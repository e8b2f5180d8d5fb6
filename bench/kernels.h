// The bare loops beside which the engine's operations are timed: the same work over value numbers,
// without the engine. What an operation costs above its kernel is its overhead.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace qxe::bench {

using Columns = std::vector<std::vector<int>>;

/// `rows` value numbers below `values`, the same in every run.
std::vector<int> random_codes(int rows, int values);

/// Rows (from 1) whose code lies in [first, end): each of `threads` threads scans an even part and
/// writes its rows from the part's own place in `out` on. Returns how many.
int scan_range(const std::vector<int>& codes, int first, int end, int threads, int* out);

/// The same for the rows whose code `hits`, a byte for each code, marks with 1.
int scan_hits(const std::vector<int>& codes, const std::vector<unsigned char>& hits, int threads,
              int* out);

/// All rows (from 1) in the order of their codes, equal ones ascending.
std::vector<int> rows_by_code(const std::vector<int>& codes, int values);
/// Copies the rows whose code lies in [first, end) out of all rows in the order of their codes.
/// Returns how many.
int copy_of_codes(const std::vector<int>& codes, const std::vector<int>& ordered, int first,
                  int end, int* out);

/// Rows of the first use of each code below `values`, in the same layout; a code that several parts
/// use comes out once for each. Returns how many.
int first_uses(const std::vector<int>& codes, int values, int threads, int* out);

/// Those of `count` rows that are in `others`, or those that are not, by one byte for each row of
/// the table. Returns how many.
int rows_in(const int* rows, int count, const std::vector<int>& others, bool in, int table_rows,
            int* out);

/// For each row the row of another table that has its code, `row_of` by code: pairs in `left` and
/// `right`, rows from 1.
void pair_rows(const std::vector<int>& codes, const std::vector<int>& row_of, int threads,
               int* left, int* right);

/// For each pair the code of its row on either side: `left_columns` by `left`, the others by
/// `right`, into `out` in that order. Rows count from 1.
void gather_pairs(const Columns& left_columns, const std::vector<int>& left,
                  const Columns& right_columns, const std::vector<int>& right, int threads,
                  Columns& out);

/// Sum of the values of `count` pseudo-random rows: a code, then its value.
double sum_of_cells(const std::vector<int>& codes, const std::vector<double>& values, int count);

/// The same when each cell's place depends on the value before.
double sum_of_cells_in_turn(const std::vector<int>& codes, const std::vector<double>& values,
                            int count);

/// `rows` keys of `bits` bits, the same in every run.
std::vector<uint64_t> random_keys(int rows, int bits);

/// Rows in the order of their keys: counting passes over words of key and row.
class KeySorter {
 public:
  explicit KeySorter(int rows) : from_(static_cast<size_t>(rows)), to_(from_.size()) {}

  void sort(const std::vector<uint64_t>& keys, int bits, int threads, int* out);

 private:
  std::vector<uint64_t> from_;
  std::vector<uint64_t> to_;
};

/// What a summary finds out about each cell of a cube, with one cube for each thread, in memory
/// that is touched before.
class CellSummer {
 public:
  /// With `extremes` also the highest and lowest code of the measure.
  CellSummer(int cells, int threads, bool extremes);

  /// Adds up count and sum of `measure`'s values in the cells of one or two dimensions, of which
  /// the last has `size` codes. Returns how many cells have rows.
  int sum(const std::vector<std::vector<int>>& dimensions, int size,
          const std::vector<int>& measure, const std::vector<double>& values);

 private:
  struct SmallCell {
    double sum;
    int count;

    void add(double value, int) { sum += value, ++count; }
    void merge(const SmallCell& other) { sum += other.sum, count += other.count; }
  };
  struct Cell : SmallCell {
    int max;
    int min = std::numeric_limits<int>::max();

    // Extremes change so rarely that a branch costs less than a store for each row.
    void add(double value, int code) {
      SmallCell::add(value, code);
      if (code > max) [[unlikely]]
        max = code;
      if (code < min) [[unlikely]]
        min = code;
    }
    void merge(const Cell& other) {
      SmallCell::merge(other);
      max = std::max(max, other.max);
      min = std::min(min, other.min);
    }
  };

  template <class Cells>
  int sum_cells(std::vector<Cells>& cubes, const std::vector<std::vector<int>>& dimensions,
                int size, const std::vector<int>& measure, const std::vector<double>& values);

  const size_t cells_;
  const size_t copies_;  // of few cells, so that a row does not wait for the one before
  std::vector<std::vector<Cell>> cubes_;  // one of the two is in use
  std::vector<std::vector<SmallCell>> small_cubes_;
};

/// A mapped file.
class FileText {
 public:
  explicit FileText(const std::string& path);
  ~FileText();
  FileText(const FileText&) = delete;
  FileText& operator=(const FileText&) = delete;

  const char* text() const { return text_; }
  long size() const { return size_; }

 private:
  const char* text_;
  long size_;
};

/// Finds and hashes the cells of comma-separated text; returns a sum of the hashes.
int hash_cells(const FileText& text, int threads);

/// Texts as long as exported lines are, the same in every run.
std::vector<std::string> random_lines(int count);
/// Copies lines into a block and writes it out each time it holds a megabyte.
void copy_lines(const std::vector<std::string>& lines, const std::string& path);

/// One flag per row, 0 for a tenth of them, the same in every run.
std::vector<char> kept_flags(int rows);
/// Moves the kept codes of each column up; the columns keep their size.
void close_up(Columns& columns, const std::vector<char>& kept, int threads);
/// Copies the codes of some rows, from 1, column by column.
void gather(const Columns& columns, const std::vector<int>& rows, Columns& out, int threads);
/// Marks the codes below `values` that are in use and numbers them anew.
void renumber(Columns& columns, int values, int threads);
/// Copies bytes into fresh memory that is advised to come in huge pages.
void copy_to_fresh_memory(const std::vector<char>& from, int threads);

}  // namespace qxe::bench
