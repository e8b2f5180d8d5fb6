// One value of one type as a value of another: what each pair of data types means. A function is
// named after the lists whose elements it converts; NULL never reaches it.
#pragma once

#include "qxe_numeric.h"

namespace qxe {

/// What a conversion needs to know beside the value.
struct ConversionContext {
  NumericInfo source_info;  // of decimals
  NumericInfo target_info;
  int date_order;
  char* text;  // place of the text that a conversion to strings writes
};

using Context = ConversionContext;

double intVL2dblVL(int x, const Context&);
double intVL2dateVL(int x, const Context&);
double intVL2timeVL(int x, const Context&);
double intVL2datetimeVL(int x, const Context&);
const char* intVL2strVL(int x, const Context&);
Numeric intVL2decVL(int x, const Context&);

int dblVL2intVL(double x, const Context&);
double dblVL2dateVL(double x, const Context&);
double dblVL2timeVL(double x, const Context&);
double dblVL2datetimeVL(double x, const Context&);
const char* dblVL2strVL(double x, const Context&);
Numeric dblVL2decVL(double x, const Context&);

int dateVL2intVL(double x, const Context&);
double dateVL2dblVL(double x, const Context&);
double dateVL2timeVL(double x, const Context&);
double dateVL2datetimeVL(double x, const Context&);
const char* dateVL2strVL(double x, const Context&);
Numeric dateVL2decVL(double x, const Context&);

int timeVL2intVL(double x, const Context&);
double timeVL2dblVL(double x, const Context&);
double timeVL2dateVL(double x, const Context&);
double timeVL2datetimeVL(double x, const Context&);
const char* timeVL2strVL(double x, const Context&);
Numeric timeVL2decVL(double x, const Context&);

int datetimeVL2intVL(double x, const Context&);
double datetimeVL2dblVL(double x, const Context&);
double datetimeVL2dateVL(double x, const Context&);
double datetimeVL2timeVL(double x, const Context&);
const char* datetimeVL2strVL(double x, const Context&);
Numeric datetimeVL2decVL(double x, const Context&);

int strVL2intVL(const char* x, const Context&);
double strVL2dblVL(const char* x, const Context&);
double strVL2dateVL(const char* x, const Context&);
double strVL2timeVL(const char* x, const Context&);
double strVL2datetimeVL(const char* x, const Context&);
Numeric strVL2decVL(const char* x, const Context&);

int decVL2intVL(Numeric x, const Context&);
double decVL2dblVL(Numeric x, const Context&);
double decVL2dateVL(Numeric x, const Context&);
double decVL2timeVL(Numeric x, const Context&);
double decVL2datetimeVL(Numeric x, const Context&);
const char* decVL2strVL(Numeric x, const Context&);
Numeric decVL2decVL(Numeric x, const Context&);

/// Bytes of the longest text that a conversion to strings makes, with its terminator.
inline constexpr int kNumberTextSlot = 20;  // integers, dates, times
inline constexpr int kDateTimeTextSlot = 64;
inline constexpr int kDoubleTextSlot = 320;
inline constexpr int kDecimalTextSlot = 50;

}  // namespace qxe
