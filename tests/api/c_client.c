/* A client in C11: the header compiles as C, the functions link by their plain names, and one way
 * through the engine works, from columns in memory to rows read back. */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "qxe.h"

static int failures = 0;

#define CHECK(condition)                                               \
  do {                                                                 \
    if (!(condition)) {                                                \
      printf("%s:%d: not true: %s\n", __FILE__, __LINE__, #condition); \
      ++failures;                                                      \
    }                                                                  \
  } while (0)

enum { kRows = 5 };

/* Five rows: age (integer, one NULL), name (string), price (decimal with two digits). */
static int make_people(void) {
  const int table = RQXAddRealTable("people", kRows);
  CHECK(table > 0);

  int ages[kRows] = {30, QX_NULL_INT, 10, 30, 20};
  CHECK(RQXAddRealFilter2(table, 0, "age", QX_DT_INTEGER, kRows, ages, NULL, NULL) > 0);

  char first[] = "Ada", second[] = "Grace", third[] = "Edsger", fourth[] = "Barbara", fifth[] = "";
  char* names[kRows] = {first, second, third, fourth, fifth};
  CHECK(RQXAddRealFilter2(table, 1, "name", QX_DT_STRING, kRows, names, NULL, NULL) > 0);

  const NumericInfo cents = {2, QX_ROUND_HALFUP};
  Numeric prices[kRows];
  for (int i = 0; i < kRows; ++i) {
    char text[16];
    snprintf(text, sizeof text, "%d.25", i + 1);
    CHECK(RQXNumericStr2Num(text, &cents, &prices[i], NULL) == 0);
  }
  CHECK(RQXAddRealFilter2Numeric(table, 2, "price", QX_DT_DECIMAL, kRows, prices, NULL, NULL,
                                 cents.scale, cents.rounding) > 0);
  CHECK(RQXGetNFilter(table) == 3);
  return table;
}

static void expect_rows(int table, int set, int count, const int* rows) {
  int found[kRows] = {0};
  int size = -1;
  CHECK(RQXGetSet(table, set, &size, kRows, found) == count);
  CHECK(size == count);
  CHECK(memcmp(found, rows, sizeof *rows * (size_t)count) == 0);
}

static void search_and_sort(int table) {
  const int age = RQXGetFilterIDFromName(table, "age");
  int set_ids[16];
  CHECK(RQXGetSetList(table, 16, set_ids) == 1);
  const int all = set_ids[0];

  int low = 20, high = 30;
  const int adults = RQXSearchByField(table, age, all, QX_OPE_BETWEEN, (char*)&low, (char*)&high);
  expect_rows(table, adults, 3, (const int[]){1, 4, 5});
  const int youngest_first = RQXSortByField(table, age, adults, QX_SORT_ASC);
  expect_rows(table, youngest_first, 3, (const int[]){5, 1, 4});

  char part[] = "a";
  const int name = RQXGetFilterIDFromName(table, "name");
  const int with_a = RQXSearchByField(table, name, all, QX_OPE_CONTAINS, part, NULL);
  expect_rows(table, with_a, 3, (const int[]){1, 2, 4});
}

static void read_cells(int table) {
  const int all = 1;
  int type = 0;
  char cell[4096];
  CHECK(RQXGetData1(table, RQXGetFilterIDFromName(table, "name"), all, 3, &type, cell) == 6);
  CHECK(type == QX_DT_STRING);
  CHECK(strcmp(cell, "Edsger") == 0);
  CHECK(RQXGetData1IntR1(table, RQXGetFilterIDFromName(table, "age"), all, 2) == QX_NULL_INT);

  Numeric price;
  CHECK(RQXGetData1NumericR1(table, RQXGetFilterIDFromName(table, "price"), all, 4, &price) == 16);
  const NumericInfo cents = {2, QX_ROUND_HALFUP};
  double number = 0;
  CHECK(RQXNumericNum2Dbl(&price, &cents, &number) == 0);
  CHECK(fabs(number - 4.25) < 1e-12);
}

static void fail_and_ask_why(void) {
  int time = 0, code = 0;
  char call[64], message[128];
  while (RQXGetErrorLog(&time, call, &code, message) == 1) {
  }
  CHECK(RQXGetTotalRows(4711) == QX_ERROR_NO_TABLE);
  CHECK(RQXGetErrorLog(&time, call, &code, message) == 1);
  CHECK(code == QX_ERROR_NO_TABLE);
  CHECK(strncmp(message, "No Such Table: 4711", strlen("No Such Table: 4711")) == 0);
}

int main(void) {
  int version[4];
  char copyright[512];
  CHECK(RQXGetVersion(version, copyright) == 0);
  CHECK(version[1] == 25);

  const int table = make_people();
  search_and_sort(table);
  read_cells(table);
  fail_and_ask_why();
  CHECK(RQXDeleteTable(table) >= 0);
  CHECK(RQXGetNTable() == 0);

  printf("%s\n", failures == 0 ? "passed" : "failed");
  return failures == 0 ? 0 : 1;
}
