#include "kernels.h"

#include <fcntl.h>
#include <immintrin.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <fstream>
#include <numeric>
#include <random>
#include <stdexcept>
#include <thread>
#include <utility>

namespace qxe::bench {

std::vector<int> random_codes(int rows, int values) {
  std::mt19937 random(7);
  std::vector<int> codes(static_cast<size_t>(rows));
  for (int& code : codes) code = static_cast<int>(random() % static_cast<unsigned>(values));
  return codes;
}

namespace {

/// `body(begin, end)` on even parts of `n` elements, each on a thread of its own but the first;
/// returns the sum of what they return.
template <class Body>
int in_parts(long n, int threads, const Body& body) {
  std::vector<int> results(static_cast<size_t>(threads));
  const auto run = [&](int part) {
    results[static_cast<size_t>(part)] = body(n * part / threads, n * (part + 1) / threads);
  };
  std::vector<std::thread> others;
  for (int part = 1; part < threads; ++part) others.emplace_back(run, part);
  run(0);
  for (std::thread& other : others) other.join();
  return std::accumulate(results.begin(), results.end(), 0);
}

int scan_plain(const int* codes, long begin, long end, int first, int last, int* out) {
  const auto width = static_cast<unsigned>(last - first);
  int* next = out;
  for (long i = begin; i < end; ++i) {
    *next = static_cast<int>(i) + 1;
    next += static_cast<unsigned>(codes[i] - first) < width;
  }
  return static_cast<int>(next - out);
}

__attribute__((target("avx512f,popcnt"))) int scan_avx512(const int* codes, long begin, long end,
                                                          int first, int last, int* out) {
  const __m512i low = _mm512_set1_epi32(first);
  const __m512i width = _mm512_set1_epi32(last - first);
  const __m512i places = _mm512_setr_epi32(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
  int* next = out;
  long i = begin;
  for (; i + 64 <= end; i += 64) {
    __mmask16 hits[4];
    for (int v = 0; v < 4; ++v) {
      const __m512i loaded = _mm512_loadu_si512(codes + i + v * 16);
      hits[v] = _mm512_cmplt_epu32_mask(_mm512_sub_epi32(loaded, low), width);
    }
    if ((hits[0] | hits[1] | hits[2] | hits[3]) == 0) continue;
    for (int v = 0; v < 4; ++v) {
      const __m512i rows =
          _mm512_add_epi32(places, _mm512_set1_epi32(static_cast<int>(i) + v * 16));
      _mm512_storeu_si512(next, _mm512_maskz_compress_epi32(hits[v], rows));
      next += __builtin_popcount(hits[v]);
    }
  }
  return static_cast<int>(next - out) + scan_plain(codes, i, end, first, last, next);
}

}  // namespace

int scan_range(const std::vector<int>& codes, int first, int end, int threads, int* out) {
  const bool vectors = __builtin_cpu_supports("avx512f");
  return in_parts(static_cast<long>(codes.size()), threads, [&](long from, long to) {
    return (vectors ? scan_avx512 : scan_plain)(codes.data(), from, to, first, end, out + from);
  });
}

int scan_hits(const std::vector<int>& codes, const std::vector<unsigned char>& hits, int threads,
              int* out) {
  return in_parts(static_cast<long>(codes.size()), threads, [&](long from, long to) {
    int* next = out + from;
    for (long i = from; i < to; ++i) {
      *next = static_cast<int>(i) + 1;
      next += hits[static_cast<size_t>(codes[static_cast<size_t>(i)])];
    }
    return static_cast<int>(next - (out + from));
  });
}

std::vector<int> rows_by_code(const std::vector<int>& codes, int values) {
  std::vector<size_t> places(static_cast<size_t>(values) + 1);
  for (const int code : codes) ++places[static_cast<size_t>(code) + 1];
  std::partial_sum(places.begin(), places.end(), places.begin());
  std::vector<int> ordered(codes.size());
  for (size_t i = 0; i < codes.size(); ++i) {
    ordered[places[static_cast<size_t>(codes[i])]++] = static_cast<int>(i) + 1;
  }
  return ordered;
}

int copy_of_codes(const std::vector<int>& codes, const std::vector<int>& ordered, int first,
                  int end, int* out) {
  const auto place_of = [&](int code) {
    return std::partition_point(ordered.begin(), ordered.end(), [&](int row) {
      return codes[static_cast<size_t>(row) - 1] < code;
    });
  };
  const auto from = place_of(first);
  return static_cast<int>(std::copy(from, place_of(end), out) - out);
}

int first_uses(const std::vector<int>& codes, int values, int threads, int* out) {
  return in_parts(static_cast<long>(codes.size()), threads, [&](long from, long to) {
    std::vector<unsigned char> seen(static_cast<size_t>(values));
    int* next = out + from;
    for (long i = from; i < to; ++i) {
      unsigned char& used = seen[static_cast<size_t>(codes[static_cast<size_t>(i)])];
      *next = static_cast<int>(i) + 1;
      next += used == 0;
      used = 1;
    }
    return static_cast<int>(next - (out + from));
  });
}

void pair_rows(const std::vector<int>& codes, const std::vector<int>& row_of, int threads,
               int* left, int* right) {
  in_parts(static_cast<long>(codes.size()), threads, [&](long from, long to) {
    for (long i = from; i < to; ++i) {
      left[i] = static_cast<int>(i) + 1;
      right[i] = row_of[static_cast<size_t>(codes[static_cast<size_t>(i)])];
    }
    return 0;
  });
}

void gather_pairs(const Columns& left_columns, const std::vector<int>& left,
                  const Columns& right_columns, const std::vector<int>& right, int threads,
                  Columns& out) {
  in_parts(static_cast<long>(left.size()), threads, [&](long from, long to) {
    auto next = out.begin();
    const auto gather_side = [&](const Columns& columns, const std::vector<int>& rows) {
      for (const std::vector<int>& codes : columns) {
        int* const own = (next++)->data();
        for (long i = from; i < to; ++i) {
          own[i] = codes[static_cast<size_t>(rows[static_cast<size_t>(i)]) - 1];
        }
      }
    };
    gather_side(left_columns, left);
    gather_side(right_columns, right);
    return 0;
  });
}

int rows_in(const int* rows, int count, const std::vector<int>& others, bool in, int table_rows,
            int* out) {
  std::vector<char> marks(static_cast<size_t>(table_rows) + 1);
  for (const int row : others) marks[static_cast<size_t>(row)] = 1;
  int kept = 0;
  for (int i = 0; i < count; ++i) {
    out[kept] = rows[i];
    kept += (marks[static_cast<size_t>(rows[i])] != 0) == in;
  }
  return kept;
}

double sum_of_cells(const std::vector<int>& codes, const std::vector<double>& values, int count) {
  double sum = 0;
  static unsigned position = 0;  // other cells each time
  for (int i = 0; i < count; ++i) {
    position = position * 1664525u + 1013904223u;
    sum += values[static_cast<size_t>(codes[position % codes.size()])];
  }
  return sum;
}

double sum_of_cells_in_turn(const std::vector<int>& codes, const std::vector<double>& values,
                            int count) {
  double sum = 0;
  static unsigned position = 0;
  double value = 0;
  for (int i = 0; i < count; ++i) {
    position = position * 1664525u + 1013904223u + static_cast<unsigned>(value);
    value = values[static_cast<size_t>(codes[position % codes.size()])];
    sum += value;
  }
  return sum;
}

std::vector<uint64_t> random_keys(int rows, int bits) {
  std::mt19937_64 random(7);
  std::vector<uint64_t> keys(static_cast<size_t>(rows));
  for (uint64_t& key : keys) key = random() >> (64 - bits);
  return keys;
}

namespace {

// A word holds a key of up to 40 bits above the row, of 24.
constexpr int kRowBits = 24;

struct Pass {
  int shift;
  size_t buckets;

  size_t bucket(uint64_t word) const { return word >> shift & (buckets - 1); }
};

/// One counting pass: each thread counts its part, places are summed up bucket by bucket, and each
/// thread moves its part.
void move_words(const std::vector<uint64_t>& from, std::vector<uint64_t>& to, const Pass& pass,
                int threads) {
  const auto n = static_cast<long>(from.size());
  std::vector<std::vector<size_t>> places(static_cast<size_t>(threads));
  const auto part_of = [&](long begin) {
    size_t part = 0;
    while (n * (static_cast<long>(part) + 1) / threads <= begin) ++part;
    return part;
  };
  in_parts(n, threads, [&](long begin, long end) {
    std::vector<size_t> counts(pass.buckets);
    for (long i = begin; i < end; ++i) ++counts[pass.bucket(from[static_cast<size_t>(i)])];
    places[part_of(begin)] = std::move(counts);
    return 0;
  });
  size_t used = 0;
  for (size_t bucket = 0; bucket < pass.buckets; ++bucket) {
    for (auto& own : places) used += std::exchange(own[bucket], used);
  }
  in_parts(n, threads, [&](long begin, long end) {
    std::vector<size_t>& next = places[part_of(begin)];
    for (long i = begin; i < end; ++i) {
      const uint64_t word = from[static_cast<size_t>(i)];
      to[next[pass.bucket(word)]++] = word;
    }
    return 0;
  });
}

}  // namespace

void KeySorter::sort(const std::vector<uint64_t>& keys, int bits, int threads, int* out) {
  const auto n = static_cast<long>(keys.size());
  in_parts(n, threads, [&](long begin, long end) {
    for (long i = begin; i < end; ++i) {
      const auto at = static_cast<size_t>(i);
      from_[at] = keys[at] << kRowBits | (at + 1);
    }
    return 0;
  });
  constexpr int kMaxDigit = 11;
  const int passes = (bits + kMaxDigit - 1) / kMaxDigit;
  const int digit = (bits + passes - 1) / passes;
  for (int pass = 0; pass < passes; ++pass) {
    move_words(from_, to_, {kRowBits + pass * digit, size_t{1} << digit}, threads);
    from_.swap(to_);
  }
  in_parts(n, threads, [&](long begin, long end) {
    for (long i = begin; i < end; ++i) {
      out[i] = static_cast<int>(from_[static_cast<size_t>(i)] & ((1 << kRowBits) - 1));
    }
    return 0;
  });
}

namespace {

constexpr int kCellCopies = 4;
constexpr int kFewCells = 64;

/// Adds rows to `cells` and the copies of them behind, turns by turns.
template <int copies, class Cell, class CellAt>
void add_to_cells(Cell* cells, size_t size, const CellAt& cell_at, const int* codes,
                  const double* values, long begin, long end) {
  const auto add = [=](long row, size_t copy) {
    const int code = codes[row];
    cells[copy * size + static_cast<size_t>(cell_at(row))].add(values[code], code);
  };
  long row = begin;
  for (; row + copies <= end; row += copies) {
    for (int copy = 0; copy < copies; ++copy) add(row + copy, static_cast<size_t>(copy));
  }
  for (; row < end; ++row) add(row, 0);
}

}  // namespace

CellSummer::CellSummer(int cells, int threads, bool extremes)
    : cells_(static_cast<size_t>(cells)), copies_(cells <= kFewCells ? kCellCopies : 1) {
  const auto cubes = static_cast<size_t>(threads);
  if (extremes) {
    cubes_.assign(cubes, std::vector<Cell>(cells_ * copies_));
  } else {
    small_cubes_.assign(cubes, std::vector<SmallCell>(cells_ * copies_));
  }
}

template <class Cells>
int CellSummer::sum_cells(std::vector<Cells>& cubes,
                          const std::vector<std::vector<int>>& dimensions, int size,
                          const std::vector<int>& measure, const std::vector<double>& values) {
  using OneCell = typename Cells::value_type;
  const int threads = static_cast<int>(cubes.size());
  const int* const first = dimensions[0].data();
  const int* const second = dimensions.back().data();
  std::atomic<size_t> next{0};
  in_parts(static_cast<long>(measure.size()), threads, [&](long begin, long end) {
    Cells& cells = cubes[next++];
    std::fill(cells.begin(), cells.end(), OneCell{});
    const auto add = [&](const auto& cell_at) {
      if (copies_ == 1) {
        add_to_cells<1>(cells.data(), cells_, cell_at, measure.data(), values.data(), begin, end);
      } else {
        add_to_cells<kCellCopies>(cells.data(), cells_, cell_at, measure.data(), values.data(),
                                  begin, end);
      }
    };
    if (dimensions.size() == 1) {
      add([=](long row) { return first[row]; });
    } else {
      add([=](long row) { return first[row] * size + second[row]; });
    }
    return 0;
  });
  return in_parts(static_cast<long>(cells_), threads, [&](long begin, long end) {
    int used = 0;
    for (auto at = static_cast<size_t>(begin); at < static_cast<size_t>(end); ++at) {
      OneCell& cell = cubes[0][at];
      for (size_t cube = 0; cube < cubes.size(); ++cube) {
        for (size_t copy = cube == 0 ? 1 : 0; copy < copies_; ++copy) {
          cell.merge(cubes[cube][at + copy * cells_]);
        }
      }
      used += cell.count != 0;
    }
    return used;
  });
}

int CellSummer::sum(const std::vector<std::vector<int>>& dimensions, int size,
                    const std::vector<int>& measure, const std::vector<double>& values) {
  return cubes_.empty() ? sum_cells(small_cubes_, dimensions, size, measure, values)
                        : sum_cells(cubes_, dimensions, size, measure, values);
}

FileText::FileText(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY);
  struct stat info = {};
  if (file < 0 || fstat(file, &info) != 0) throw std::runtime_error(path);
  size_ = info.st_size;
  void* const text = mmap(nullptr, static_cast<size_t>(size_), PROT_READ, MAP_PRIVATE, file, 0);
  close(file);
  if (text == MAP_FAILED) throw std::runtime_error(path);
  text_ = static_cast<const char*>(text);
}

FileText::~FileText() {
  munmap(const_cast<char*>(text_), static_cast<size_t>(size_));
}

namespace {

/// A hash of a cell's first and last eight bytes, which are readable.
uint64_t hash_cell(const char* begin, const char* end) {
  uint64_t first, last;
  std::memcpy(&first, begin, sizeof first);
  std::memcpy(&last, end - sizeof last, sizeof last);
  const long unused = std::max(8 - (end - begin), 0L);
  const uint64_t hash = (first << (4 * unused) << (4 * unused)) * 0xd6e8feb86659fd93;
  return (hash ^ last ^ hash >> 32) * 0xd6e8feb86659fd93;
}

int hash_plain(const char* begin, const char* end) {
  uint64_t sum = 0;
  const char* cell = begin;
  for (const char* at = begin + 8; at < end - 8; ++at) {
    if (*at != ',' && *at != '\n') continue;
    sum += hash_cell(cell, at);
    cell = at + 1;
  }
  return static_cast<int>(sum);
}

__attribute__((target("avx512f,avx512bw,bmi"))) int hash_avx512(const char* begin,
                                                                const char* end) {
  const __m512i comma = _mm512_set1_epi8(',');
  const __m512i line_feed = _mm512_set1_epi8('\n');
  uint64_t sum = 0;
  const char* cell = begin;
  const char* block = begin + 64;  // so that there is text in front of the first stop
  for (; block + 128 <= end; block += 64) {
    const __m512i bytes = _mm512_loadu_si512(block);
    uint64_t stops =
        _mm512_cmpeq_epi8_mask(bytes, comma) | _mm512_cmpeq_epi8_mask(bytes, line_feed);
    for (; stops != 0; stops &= stops - 1) {
      const char* const stop = block + __builtin_ctzll(stops);
      sum += hash_cell(cell, stop);
      cell = stop + 1;
    }
  }
  return static_cast<int>(sum) + hash_plain(cell, end);
}

}  // namespace

int hash_cells(const FileText& text, int threads) {
  const bool vectors = __builtin_cpu_supports("avx512bw");
  return in_parts(text.size(), threads, [&](long begin, long end) {
    return (vectors ? hash_avx512 : hash_plain)(text.text() + begin, text.text() + end);
  });
}

std::vector<std::string> random_lines(int count) {
  std::mt19937 random(7);
  std::vector<std::string> lines(static_cast<size_t>(count));
  for (std::string& line : lines) line.assign(58 + random() % 15, 'x');
  return lines;
}

void copy_lines(const std::vector<std::string>& lines, const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  std::vector<char> block;
  for (const std::string& line : lines) {
    block.insert(block.end(), line.begin(), line.end());
    block.push_back('\n');
    if (block.size() < size_t{1} << 20) continue;
    file.write(block.data(), static_cast<std::streamsize>(block.size()));
    block.clear();
  }
  file.write(block.data(), static_cast<std::streamsize>(block.size()));
}

std::vector<char> kept_flags(int rows) {
  std::mt19937 random(7);
  std::vector<char> kept(static_cast<size_t>(rows));
  for (char& flag : kept) flag = random() % 10 != 0;
  return kept;
}

namespace {

/// `body(column)` for each column; threads take even parts of the columns.
template <class Body>
void for_each_column(size_t columns, int threads, const Body& body) {
  in_parts(static_cast<long>(columns), threads, [&](long begin, long end) {
    for (long column = begin; column < end; ++column) body(static_cast<size_t>(column));
    return 0;
  });
}

}  // namespace

void close_up(Columns& columns, const std::vector<char>& kept, int threads) {
  for_each_column(columns.size(), threads, [&](size_t column) {
    int* const codes = columns[column].data();
    int* next = codes;
    for (size_t i = 0; i < kept.size(); ++i) {
      *next = codes[i];
      next += kept[i];
    }
  });
}

void gather(const Columns& columns, const std::vector<int>& rows, Columns& out, int threads) {
  for_each_column(columns.size(), threads, [&](size_t column) {
    const int* const codes = columns[column].data();
    int* next = out[column].data();
    for (const int row : rows) *next++ = codes[row - 1];
  });
}

void renumber(Columns& columns, int values, int threads) {
  for_each_column(columns.size(), threads, [&](size_t column) {
    std::vector<int> numbers(static_cast<size_t>(values), 0);
    for (const int code : columns[column]) numbers[static_cast<size_t>(code)] = 1;
    int used = 0;
    for (int& number : numbers) used += std::exchange(number, used);
    for (int& code : columns[column]) code = numbers[static_cast<size_t>(code)];
  });
}

void copy_to_fresh_memory(const std::vector<char>& from, int threads) {
  constexpr size_t kHugePage = size_t{2} << 20;
  const size_t mapped = from.size() + kHugePage;
  void* const area =
      mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (area == MAP_FAILED) throw std::runtime_error("no memory");
  madvise(area, mapped, MADV_HUGEPAGE);
  char* const to = static_cast<char*>(area);
  in_parts(static_cast<long>(from.size()), threads, [&](long begin, long end) {
    std::memcpy(to + begin, from.data() + begin, static_cast<size_t>(end - begin));
    return 0;
  });
  munmap(area, mapped);
}

}  // namespace qxe::bench
