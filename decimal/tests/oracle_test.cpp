// Every function against the cases of oracle.py, which Python's decimal module has answered.
#include <gtest/gtest.h>
#include <stdio.h>

#include <bit>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "number_text.h"

namespace qxe {
namespace {

/// Takes the fields of a case in order.
class Fields {
 public:
  explicit Fields(const std::string& line) : stream_(line) {}

  std::string text() {
    std::string field;
    std::getline(stream_, field, '|');
    return field;
  }
  int integer() { return std::stoi(text()); }
  Numeric numeric() { return number(text()); }
  NumericInfo info() {
    const int scale = integer();
    return {scale, integer()};
  }
  double real() { return std::bit_cast<double>(std::stoull(text(), nullptr, 16)); }

 private:
  std::istringstream stream_;
};

std::string sign_of(int comparison) {
  return std::to_string((comparison > 0) - (comparison < 0));
}

/// The outcome of `call(a, b, result)`, with a result of its own and in place of either operand.
template <class Call>
std::string binary(const Numeric& a, const Numeric& b, const Call& call) {
  Numeric result = number("12345");
  Numeric in_a = a;
  Numeric in_b = b;
  std::string apart = outcome(call(&a, &b, &result), result);
  const int status_a = call(&in_a, &b, &in_a);
  const int status_b = call(&a, &in_b, &in_b);
  if (outcome(status_a, in_a) != apart) return apart + ", but in place of a " + to_text(in_a);
  if (outcome(status_b, in_b) != apart) return apart + ", but in place of b " + to_text(in_b);
  return apart;
}

/// The same for `call(value, result)`.
template <class Call>
std::string unary(const Numeric& value, const Call& call) {
  return binary(value, value, [&](const Numeric* operand, const Numeric*, Numeric* result) {
    return call(operand, result);
  });
}

using Runner = std::string (*)(Fields&);

template <int (*function)(const Numeric*, const Numeric*, Numeric*)>
std::string at_one_scale(Fields& fields) {
  const Numeric a = fields.numeric();
  return binary(a, fields.numeric(), function);
}

template <int (*function)(const NumericInfo*, const NumericInfo*, const NumericInfo*,
                          const Numeric*, const Numeric*, Numeric*)>
std::string across_scales(Fields& fields) {
  const NumericInfo info_a = fields.info();
  const NumericInfo info_b = fields.info();
  const NumericInfo info_out = fields.info();
  const Numeric left = fields.numeric();
  return binary(left, fields.numeric(), [&](const Numeric* a, const Numeric* b, Numeric* result) {
    return function(&info_a, &info_b, &info_out, a, b, result);
  });
}

template <int (*function)(const Numeric*, const NumericInfo*, Numeric*)>
std::string to_whole(Fields& fields) {
  const Numeric value = fields.numeric();
  const NumericInfo info = fields.info();
  return unary(value, [&](const Numeric* operand, Numeric* result) {
    return function(operand, &info, result);
  });
}

std::string compare(Fields& fields) {
  const Numeric a = fields.numeric();
  const Numeric b = fields.numeric();
  return sign_of(RQXNumericCmp(&a, &b));
}

std::string compare_rescaling(Fields& fields) {
  const NumericInfo info_a = fields.info();
  const NumericInfo info_b = fields.info();
  const Numeric a = fields.numeric();
  const Numeric b = fields.numeric();
  const int forward = RQXNumericRescalingCmp(&info_a, &info_b, &a, &b);
  const int backward = RQXNumericRescalingCmp(&info_b, &info_a, &b, &a);
  if (sign_of(forward) != sign_of(-backward)) return "depends on the order of the operands";
  return sign_of(forward);
}

std::string rescale(Fields& fields) {
  const Numeric value = fields.numeric();
  const NumericInfo old_info = fields.info();
  const NumericInfo new_info = fields.info();
  return unary(value, [&](const Numeric* operand, Numeric* result) {
    return RQXNumericRescale(operand, &old_info, &new_info, result);
  });
}

std::string from_double(Fields& fields) {
  const NumericInfo info = fields.info();
  Numeric result;
  const int status = RQXNumericDbl2Num(&info, &result, fields.real());
  return outcome(status, result);
}

std::string to_double(Fields& fields) {
  const Numeric value = fields.numeric();
  const NumericInfo info = fields.info();
  double out = 0;
  const int status = RQXNumericNum2Dbl(&value, &info, &out);
  char bits[32];
  snprintf(bits, sizeof bits, "%d %016lx", status, std::bit_cast<unsigned long>(out));
  return bits;
}

std::string from_int(Fields& fields) {
  const NumericInfo info = fields.info();
  Numeric result;
  const int status = RQXNumericInt2Num(&info, &result, fields.integer());
  return outcome(status, result);
}

std::string to_int(Fields& fields) {
  const NumericInfo info = fields.info();
  const Numeric value = fields.numeric();
  int out = 0;
  const int status = RQXNumericNum2Int(&info, &value, &out);
  return std::to_string(status) + ' ' + std::to_string(out);
}

std::string from_text(Fields& fields) {
  const std::string text = fields.text();
  const NumericInfo info = fields.info();
  Numeric result;
  char* rest = nullptr;
  const int status = RQXNumericStr2Num(text.c_str(), &info, &result, &rest);
  return outcome(status, result) + ' ' + std::to_string(text.c_str() + text.size() - rest);
}

std::string write_text(Fields& fields) {
  const Numeric value = fields.numeric();
  const NumericInfo info = fields.info();
  const int scale = fields.integer();
  const int rounding = fields.integer();
  const int size = fields.integer();
  std::vector<char> buffer(static_cast<size_t>(size), '#');  // on the heap: an overrun shows
  const int status = RQXNumericNum2Str(&value, &info, scale, rounding, buffer.data(), size);
  return std::to_string(status) + ' ' + buffer.data();
}

const std::map<std::string, Runner> kRunners = {
    {"Cmp", compare},
    {"RescalingCmp", compare_rescaling},
    {"Add", at_one_scale<RQXNumericAdd>},
    {"Sub", at_one_scale<RQXNumericSub>},
    {"Mul", at_one_scale<RQXNumericMul>},
    {"Div", at_one_scale<RQXNumericDiv>},
    {"RescalingAdd", across_scales<RQXNumericRescalingAdd>},
    {"RescalingSub", across_scales<RQXNumericRescalingSub>},
    {"RescalingMul", across_scales<RQXNumericRescalingMul>},
    {"RescalingDiv", across_scales<RQXNumericRescalingDiv>},
    {"Rescale", rescale},
    {"Round", to_whole<RQXNumericRound>},
    {"Floor", to_whole<RQXNumericFloor>},
    {"Ceil", to_whole<RQXNumericCeil>},
    {"Dbl2Num", from_double},
    {"Num2Dbl", to_double},
    {"Int2Num", from_int},
    {"Num2Int", to_int},
    {"Str2Num", from_text},
    {"Num2Str", write_text},
};

/// The lines of one function, without its name.
std::vector<std::string> cases_of(const std::string& function) {
  std::ifstream file(ORACLE_CASES);
  std::vector<std::string> cases;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(function + '|')) cases.push_back(line.substr(function.size() + 1));
  }
  return cases;
}

class OracleTest : public testing::TestWithParam<std::string> {};

TEST_P(OracleTest, AgreesWithPythonDecimal) {
  const std::string& function = GetParam();
  const std::vector<std::string> cases = cases_of(function);
  ASSERT_GE(cases.size(), 1000U);
  int failures = 0;
  for (const std::string& line : cases) {
    Fields fields(line);
    const std::string actual = kRunners.at(function)(fields);
    const std::string expected = fields.text();
    if (actual == expected) continue;
    ADD_FAILURE() << function << '|' << line.substr(0, 300) << "\nshould give " << expected
                  << "\ngives " << actual;
    ASSERT_LT(++failures, 10) << "and perhaps more";
  }
}

std::vector<std::string> functions() {
  std::vector<std::string> names;
  names.reserve(kRunners.size());
  for (const auto& [name, runner] : kRunners) names.push_back(name);
  return names;
}

INSTANTIATE_TEST_SUITE_P(Functions, OracleTest, testing::ValuesIn(functions()),
                         [](const auto& parameter) { return parameter.param; });

}  // namespace
}  // namespace qxe
