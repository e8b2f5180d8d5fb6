// Convenience forms: searches.
#include "qxe.h"

namespace {

template <class Value>
char* address_of(Value& value) {
  return reinterpret_cast<char*>(&value);
}

}  // namespace

int RQXSearchByFieldStrR1(int table, int filter, int set, int ope, char* value1, char* value2) {
  return RQXSearchByFieldStr(table, filter, set, ope, value1, value2);
}

int RQXSearchByFieldNumericR1(int table, int filter, int set, int ope, char* value1, char* value2) {
  return RQXSearchByField(table, filter, set, ope, value1, value2);
}

int RQXSearchByFieldSJISR1(int table, int filter, int set, int ope, char* value1, char* value2) {
  return RQXSearchByFieldSJIS(table, filter, set, ope, value1, value2);
}

int RQXSearchByFieldLocaleR1(int table, int filter, int set, int ope, char* value1, char* value2,
                             int localeId) {
  return RQXSearchByFieldLocale(table, filter, set, ope, value1, value2, localeId);
}

int RQXSearchByFieldIntR1(int table, int filter, int set, int ope, int value1, int value2) {
  return RQXSearchByField(table, filter, set, ope, address_of(value1), address_of(value2));
}

int RQXSearchByFieldDblR1(int table, int filter, int set, int ope, double value1, double value2) {
  return RQXSearchByField(table, filter, set, ope, address_of(value1), address_of(value2));
}
