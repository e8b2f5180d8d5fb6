// The loops of a scan, with each vector unit of this machine, against one comparison per row.
#include "search/scan_kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>

#include "support/case_name.h"
#include "support/random_data.h"

namespace qxe::test {
namespace {

struct UnitCase {
  const char* name;
  VectorUnit unit;
};

constexpr int kValues = 100;
constexpr int kGuard = -7;

class ScanKernelsTest : public testing::TestWithParam<UnitCase> {
 protected:
  void SetUp() override {
    if (!has_vector_unit(GetParam().unit)) GTEST_SKIP() << "not on this machine";
  }

  /// Random value numbers by row, from 1 on.
  std::vector<int> value_numbers(int rows) {
    std::vector<int> pv(static_cast<size_t>(rows) + 1);
    for (int& value_number : pv) value_number = random_.below(kValues);
    return pv;
  }

  std::vector<int> shuffled_rows(int rows) {
    std::vector<int> list(static_cast<size_t>(rows));
    std::iota(list.begin(), list.end(), 1);
    for (size_t i = list.size(); i > 1; --i) {
      std::swap(list[i - 1], list[static_cast<size_t>(random_.below(static_cast<int>(i)))]);
    }
    return list;
  }

  /// Runs `kernel` over positions `begin` to `end` with exactly the room that it may use.
  template <class Kernel, class Test>
  static void expect_right(Kernel kernel, const ScanRows& rows, long begin, long end,
                           const Test& test) {
    std::vector<int> wanted;
    for (long i = begin; i < end; ++i) {
      if (test(rows.pv[rows.row(i)])) wanted.push_back(rows.row(i));
    }
    std::vector<int> out(static_cast<size_t>(end - begin) + 16, kGuard);
    const long kept = kernel(rows, begin, end, test, out.data());
    EXPECT_TRUE(std::all_of(out.begin() + (end - begin), out.end(),
                            [](int element) { return element == kGuard; }))
        << "wrote behind the room for " << end - begin << " rows";
    out.resize(static_cast<size_t>(kept));
    ASSERT_EQ(out, wanted) << "positions " << begin << " to " << end
                           << (rows.rows == nullptr ? " in order" : " listed");
  }

  /// The same at sizes around those of one vector and of one step, from starts of any alignment.
  template <class Kernel, class Test>
  void expect_right_everywhere(Kernel kernel, const Test& test) {
    constexpr int kRows = 300;
    const std::vector<int> pv = value_numbers(kRows);
    const std::vector<int> list = shuffled_rows(kRows);
    for (const int* rows : {static_cast<const int*>(nullptr), list.data()}) {
      for (const long size : {0, 1, 7, 8, 9, 15, 16, 31, 32, 33, 63, 64, 65, 127, 128, 200, 283}) {
        for (const long begin : {0, 1, 5, 17}) {
          expect_right(kernel, {pv.data(), rows}, begin, begin + size, test);
        }
      }
    }
  }

  const ScanKernels& kernels() const { return scan_kernels(GetParam().unit); }

  RandomData random_{1};
};

TEST_P(ScanKernelsTest, KeepsRowsInTheRanges) {
  const RangeTest tests[] = {{{0, kValues}, {}}, {{}, {}},
                             {{0, 1}, {}},       {{kValues - 1, kValues}, {}},
                             {{20, 60}, {}},     {{0, 20}, {60, kValues}},
                             {{}, {60, 61}},     {{50, 51}, {3, 4}}};
  for (const RangeTest& test : tests) expect_right_everywhere(kernels().in_ranges, test);
}

TEST_P(ScanKernelsTest, KeepsRowsWhoseBitIsSet) {
  for (const int percent : {0, 3, 50, 100}) {
    std::vector<unsigned char> hits(kValues);
    for (unsigned char& hit : hits) {
      hit = random_.chance(percent) ? static_cast<unsigned char>(1 + random_.below(255)) : 0;
    }
    std::vector<uint32_t> words((kValues + 31) / 32);
    pack_hits(hits.data(), kValues, words.data());
    const BitTest test{words.data()};
    for (int value_number = 0; value_number < kValues; ++value_number) {
      ASSERT_EQ(test(value_number), hits[static_cast<size_t>(value_number)] != 0) << value_number;
    }
    expect_right_everywhere(kernels().in_bits, test);
  }
}

TEST_P(ScanKernelsTest, PutsTheRowsOfSetBits) {
  for (int round = 0; round < 200; ++round) {
    const int percent = round % 5 * 25;
    std::vector<uint32_t> words(static_cast<size_t>(random_.below(9)));
    std::vector<int> wanted;
    for (size_t i = 0; i < words.size(); ++i) {
      for (int bit = 0; bit < 32; ++bit) {
        if (!random_.chance(percent)) continue;
        words[i] |= uint32_t{1} << bit;
        wanted.push_back(100 + static_cast<int>(i) * 32 + bit);
      }
    }
    std::vector<int> out(wanted.size() + 40, kGuard);
    const int* const room_end = out.data() + wanted.size();
    const int* const end = kernels().put_rows(words.data(), static_cast<long>(words.size()), 100,
                                              out.data(), room_end);
    ASSERT_EQ(end, room_end) << "round " << round;
    wanted.resize(out.size(), kGuard);
    ASSERT_EQ(out, wanted) << "round " << round;
  }
}

TEST_P(ScanKernelsTest, FindsTheFirstPlaceOfAPattern) {
  for (int round = 0; round < 3000; ++round) {
    const auto size = static_cast<size_t>(random_.below(200));
    const auto text = std::make_unique<char[]>(size);  // no terminator to run into
    for (size_t i = 0; i < size; ++i) text[i] = random_.chance(90) ? 'a' : 'b';
    std::string pattern;
    for (int i = 1 + random_.below(5); i > 0; --i) pattern += random_.chance(70) ? 'a' : 'b';
    if (random_.chance(20)) pattern += static_cast<char>(0xE3);
    const char* const begin = text.get();
    const char* const end = begin + size;
    const char* const found = kernels().find_bytes(begin, end, pattern.data(), pattern.size());
    const size_t wanted = std::string_view(begin, size).find(pattern);
    ASSERT_EQ(found == nullptr ? std::string_view::npos : static_cast<size_t>(found - begin),
              wanted)
        << pattern << " in " << size << " bytes, round " << round;
  }
}

INSTANTIATE_TEST_SUITE_P(Units, ScanKernelsTest,
                         testing::Values(UnitCase{"Plain", VectorUnit::kNone},
                                         UnitCase{"Avx2", VectorUnit::kAvx2},
                                         UnitCase{"Avx512", VectorUnit::kAvx512}),
                         case_name<UnitCase>);

}  // namespace
}  // namespace qxe::test
