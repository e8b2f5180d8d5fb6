/* Which flights from an airport were more than an hour late?
 *
 * A tour of the engine: imports two text files through catalogs, tells what their columns hold,
 * searches, sorts, joins the flights to the airports they went to, reads and searches the join,
 * exports the answer, and counts flights and delays by airport and month. */
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include "qxe.h"

enum { kLateMinutes = 60, kWorstRows = 10, kMaxFilters = 512 };

/* Hands a result on; after a failure prints its status and what the error ring knows about it, the
 * nearest to the cause first, and ends the program. */
static int require(int status, const char* call) {
  if (status >= 0) return status;
  fprintf(stderr, "%s failed with status 0x%08x\n", call, (unsigned)status);
  int time = 0;
  int code = 0;
  char reporter[64];
  char message[128];
  while (RQXGetErrorLog(&time, reporter, &code, message) == 1) {
    fprintf(stderr, "  0x%08x %s: %s\n", (unsigned)code, reporter, message);
  }
  exit(EXIT_FAILURE);
}

/* ---- Aligned text ---- */

enum { kGridRows = 24, kGridColumns = 8, kCellSize = 64 };

/* Texts in rows and columns; row 0 holds the titles. */
typedef struct Grid {
  int rows;
  int columns;
  bool is_number[kGridColumns]; /* aligned to the right */
  char cells[kGridRows][kGridColumns][kCellSize];
} Grid;

/* Longer texts are cut. */
static void copy_text(char* cell, const char* text) {
  snprintf(cell, kCellSize, "%.*s", kCellSize - 1, text);
}

static void set_cell(Grid* grid, int row, int column, const char* text) {
  copy_text(grid->cells[row][column], text);
}

static void set_title(Grid* grid, int column, const char* text, bool is_number) {
  set_cell(grid, 0, column, text);
  grid->is_number[column] = is_number;
}

static int column_width(const Grid* grid, int column) {
  size_t width = 0;
  for (int row = 0; row < grid->rows; ++row) {
    const size_t length = strlen(grid->cells[row][column]);
    if (length > width) width = length;
  }
  return (int)width;
}

static void print_cell(const Grid* grid, int row, int column) {
  const int width = column_width(grid, column);
  const bool last = column == grid->columns - 1;
  const int padding = grid->is_number[column] ? width : last ? 0 : -width; /* below 0: behind */
  printf("  %*s", padding, grid->cells[row][column]);
}

static void print_grid(const Grid* grid) {
  for (int row = 0; row < grid->rows; ++row) {
    for (int column = 0; column < grid->columns; ++column) print_cell(grid, row, column);
    printf("\n");
  }
  printf("\n");
}

/* ---- Import and description ---- */

/* Imports DIRECTORY/NAME.csv by the catalog DIRECTORY/NAME.cat as the table NAME. */
static int import_table(const char* directory, const char* name) {
  char catalog[kCellSize];
  char data[kCellSize];
  snprintf(catalog, sizeof catalog, "%s.cat", name);
  snprintf(data, sizeof data, "%s.csv", name);
  return require(RQXAddCatalogFileEx2(directory, catalog, directory, data, name),
                 "RQXAddCatalogFileEx2");
}

static int filter_named(int table, const char* name) {
  return require(RQXGetFilterIDFromName(table, name), "RQXGetFilterIDFromName");
}

static const char* type_name(int type) {
  switch (type) {
    case QX_DT_INTEGER: return "integer";
    case QX_DT_DOUBLE: return "float";
    case QX_DT_DATE: return "date";
    case QX_DT_TIME: return "time";
    case QX_DT_STRING: return "string";
    case QX_DT_DATETIME: return "date-time";
    case QX_DT_DECIMAL: return "decimal";
    default: return "?";
  }
}

static void describe_filter(Grid* grid, int table, int filter) {
  _TRFilterInfo info;
  require(RQXGetFilterInfo(table, filter, &info), "RQXGetFilterInfo");
  char distinct[kCellSize];
  snprintf(distinct, sizeof distinct, "%d", info.valueCount - 1); /* entry 0 is NULL */
  const int row = grid->rows++;
  set_cell(grid, row, 0, info.name);
  set_cell(grid, row, 1, type_name(info.type));
  set_cell(grid, row, 2, distinct);
}

static void describe_table(int table) {
  int filters[kMaxFilters];
  const int count = require(RQXGetFilterIDList(table, filters), "RQXGetFilterIDList");
  const int rows = require(RQXGetTotalRows(table), "RQXGetTotalRows");
  printf("Table %s, %d rows\n", RQXGetTableNameR1(table), rows);

  Grid grid = {.rows = 1, .columns = 3};
  set_title(&grid, 0, "column", false);
  set_title(&grid, 1, "type", false);
  set_title(&grid, 2, "distinct values", true);
  for (int i = 0; i < count && grid.rows < kGridRows; ++i) {
    describe_filter(&grid, table, filters[i]);
  }
  print_grid(&grid);
}

/* ---- Search ---- */

typedef struct Airport {
  char name[kCellSize];
  char city[kCellSize];
} Airport;

/* Text of the value at a position, counted from 1, of a set. */
static void read_text(int table, int filter, int set, int position, char* out) {
  copy_text(out, RQXGetData1Cnv2StrR1(table, filter, set, position));
}

/* Finds an airport by its code; false when there is none. */
static bool find_airport(int airports, char* code, Airport* out) {
  const int all = -1; /* the current set, which is the set of all rows */
  const int found = require(
      RQXSearchByFieldStr(airports, filter_named(airports, "iata"), all, QX_OPE_EQ, code, NULL),
      "RQXSearchByFieldStr");
  const bool known = require(RQXGetSetSize(airports, found), "RQXGetSetSize") > 0;
  if (known) {
    read_text(airports, filter_named(airports, "name"), found, 1, out->name);
    read_text(airports, filter_named(airports, "city"), found, 1, out->city);
  }
  require(RQXDeleteSet(airports, found), "RQXDeleteSet");
  return known;
}

/* The set of the flights that left `airport` more than an hour late: one search of all rows, and
 * one of its result. */
static int search_late_flights(int flights, char* airport) {
  const int from_airport = require(
      RQXSearchByFieldStr(flights, filter_named(flights, "origin"), -1, QX_OPE_EQ, airport, NULL),
      "RQXSearchByFieldStr");
  const int late = require(RQXSearchByFieldIntR1(flights, filter_named(flights, "delay"),
                                                 from_airport, QX_OPE_GT, kLateMinutes, 0),
                           "RQXSearchByFieldIntR1");
  printf("  origin = %-10s %6d flights\n", airport, RQXGetSetSize(flights, from_airport));
  printf("  delay > %-3d        %6d of them\n\n", kLateMinutes, RQXGetSetSize(flights, late));
  return late;
}

/* ---- The flights joined to the airports they went to ---- */

/* A table of pairs: each flight of the set, in its order, with the airport of its destination. Its
 * columns are those of both tables. */
static int join_airports(int flights, int set, int airports) {
  char name[] = "flights_to_airports";
  int destination[] = {filter_named(flights, "destination"), 0};
  int code[] = {filter_named(airports, "iata"), 0};
  return require(RQXAddJoinTable(name, 0, flights, set, destination, airports, -1, code),
                 "RQXAddJoinTable");
}

static void print_worst(int flights, int set, int airports) {
  static const char* const kColumns[] = {"date",        "time", "delay", "distance",
                                         "destination", "name", "city",  "state"};
  const int join = join_airports(flights, set, airports);
  const int first_set = 1;
  const int size = require(RQXGetSetSize(join, first_set), "RQXGetSetSize");
  Grid grid = {.rows = (size < kWorstRows ? size : kWorstRows) + 1, .columns = kGridColumns};
  for (int column = 0; column < kGridColumns; ++column) {
    const int filter = filter_named(join, kColumns[column]);
    const int type = require(RQXGetFilterType(join, filter), "RQXGetFilterType");
    set_title(&grid, column, kColumns[column], type == QX_DT_INTEGER);
    for (int row = 1; row < grid.rows; ++row) {
      read_text(join, filter, first_set, row, grid.cells[row][column]);
    }
  }
  printf("The %d worst of them, joined with the airports they went to\n", grid.rows - 1);
  print_grid(&grid);
  require(RQXDeleteTable(join), "RQXDeleteTable");
}

enum { kStates = 8 };

/* The states that most flights went to, by all flights joined with the airports; and how many of
 * these flights were late, by a search of the join. */
static void print_states(int flights, int airports) {
  const int join = join_airports(flights, 1, airports);
  const int late = require(
      RQXSearchByFieldIntR1(join, filter_named(join, "delay"), 1, QX_OPE_GT, kLateMinutes, 0),
      "RQXSearchByFieldIntR1");
  const int state = filter_named(join, "state");
  int type = 0;
  int values = 0;
  int states = 0;
  const int detail =
      require(RQXOpenDetailInfo(join, 1, state, &type, &values, &states), "RQXOpenDetailInfo");
  Grid grid = {.rows = 1, .columns = 3};
  set_title(&grid, 0, "state", false);
  set_title(&grid, 1, "flights", true);
  set_title(&grid, 2, "late", true);
  for (int i = 1; i <= kStates && i <= states; ++i, ++grid.rows) {
    const int by_count = 1;
    const int forward = 0;
    char name[4096];
    int count = 0;
    require(RQXGetDetailValueStr(detail, by_count, forward, 1, i, &type, name),
            "RQXGetDetailValueStr");
    require(RQXGetDetailCount(detail, by_count, forward, 1, i, &count), "RQXGetDetailCount");
    const int found = require(RQXSearchByFieldStr(join, state, late, QX_OPE_EQ, name, NULL),
                              "RQXSearchByFieldStr");
    set_cell(&grid, grid.rows, 0, name);
    snprintf(grid.cells[grid.rows][1], kCellSize, "%d", count);
    snprintf(grid.cells[grid.rows][2], kCellSize, "%d", RQXGetSetSize(join, found));
  }
  require(RQXCloseDetailInfo(detail), "RQXCloseDetailInfo");
  printf("\nAll flights joined with the airports: %d pairs. States that most flights went to\n",
         RQXGetSetSize(join, 1));
  print_grid(&grid);
  require(RQXDeleteTable(join), "RQXDeleteTable");
}

/* ---- Export ---- */

static void export_flights(int flights, int set, const char* directory) {
  const int all[] = {-1};
  require(RQXExportAsCSV(flights, set, all, -1, -1, directory, "late_flights.csv", '/'),
          "RQXExportAsCSV");
  require(RQXSaveAsCatalog(flights, set, all, QX_EXPORT_TAB, -1, -1, '/', directory,
                           "late_flights.cat"),
          "RQXSaveAsCatalog");
  const int copy = require(RQXAddCatalogFile(directory, "late_flights.cat"), "RQXAddCatalogFile");
  printf("Written to %s\n", directory);
  printf("  late_flights.csv   text, separated by commas\n");
  printf("  late_flights.cat   catalog of SrcData.dat, separated by tabs\n");
  printf("Read back through the catalog: table %s, %d rows\n", RQXGetTableNameR1(copy),
         require(RQXGetTotalRows(copy), "RQXGetTotalRows"));
}

/* ---- Summary ---- */

enum { kSummary = 0, kBusiest = 8, kMonths = 3 }; /* the flights are of three months */

static int month_of(double date) {
  const double kDaysTo1970 = 25569;
  const time_t moment = (time_t)((date - kDaysTo1970) * 24 * 60 * 60);
  return gmtime(&moment)->tm_mon + 1;
}

/* Adds the column "month", the month of each flight's date. */
static int add_month(int flights) {
  const int date = filter_named(flights, "date");
  const int rows = require(RQXGetTotalRows(flights), "RQXGetTotalRows");
  const int all = 1; /* the set of all rows, in row order */
  int* months = malloc(sizeof *months * (size_t)rows);
  if (months == NULL) exit(EXIT_FAILURE);
  for (int row = 1; row <= rows; ++row) {
    months[row - 1] = month_of(RQXGetData1DblR1(flights, date, all, row));
  }
  const int filter = require(
      RQXAddRealFilter2(flights, kMaxFilters, "month", QX_DT_INTEGER, rows, months, NULL, NULL),
      "RQXAddRealFilter2");
  free(months);
  return filter;
}

/* A category is a value of a dimension; 0 is NULL. */
static int category_named(int dimension, const char* name) {
  char found[128];
  int category = 0;
  do {
    require(RQXCategoryRead(kSummary, dimension, ++category, found), "RQXCategoryRead");
  } while (strcmp(found, name) != 0);
  return category;
}

/* Flights of one airport in one month, and how late they were on average. */
static void add_cell(Grid* grid, int row, int origin, int month) {
  int coordinates[] = {origin, month};
  int type = 0;
  int flights = 0;
  double delay = 0;
  require(RQXSummaryRead(kSummary, QX_SUM_SUM, coordinates, &type, &type, &flights, &delay),
          "RQXSummaryRead");
  if (flights == 0) return;
  snprintf(grid->cells[row][2 * month - 1], kCellSize, "%d", flights);
  snprintf(grid->cells[row][2 * month], kCellSize, "%.1f", delay / flights);
}

/* One line for each of the airports that most flights leave. */
static void fill_cross_table(Grid* grid, int flights, int origin) {
  int type = 0;
  int values = 0;
  int airports = 0;
  const int detail = require(RQXOpenDetailInfo(flights, 1, origin, &type, &values, &airports),
                             "RQXOpenDetailInfo");
  for (int i = 1; i <= kBusiest && i <= airports; ++i) {
    char name[4096];
    const int by_count = 1;
    const int forward = 0;
    require(RQXGetDetailValueStr(detail, by_count, forward, 1, i, &type, name),
            "RQXGetDetailValueStr");
    set_cell(grid, grid->rows, 0, name);
    const int category = category_named(0, name);
    for (int month = 1; month <= kMonths; ++month) add_cell(grid, grid->rows, category, month);
    ++grid->rows;
  }
  require(RQXCloseDetailInfo(detail), "RQXCloseDetailInfo");
}

static void print_cross_table(int flights) {
  const int origin = filter_named(flights, "origin");
  _TRDimensionDef dimensions[] = {{.FilterID = origin}, {.FilterID = add_month(flights)}};
  require(RQXSummaryOpen(kSummary, flights, 1, 2, dimensions, filter_named(flights, "delay")),
          "RQXSummaryOpen");
  int done = 0;
  require(RQXSummaryExec(kSummary, QX_SUM_COUNT | QX_SUM_SUM, &done), "RQXSummaryExec");

  Grid grid = {.rows = 1, .columns = 1 + 2 * kMonths};
  set_title(&grid, 0, "origin", false);
  for (int month = 1; month <= kMonths; ++month) {
    char title[kCellSize];
    snprintf(title, sizeof title, "month %s", RQXCategoryReadR1(kSummary, 1, month));
    set_title(&grid, 2 * month - 1, title, true);
    set_title(&grid, 2 * month, "delay", true);
  }
  fill_cross_table(&grid, flights, origin);
  require(RQXSummaryClose(kSummary), "RQXSummaryClose");
  printf("Flights by origin and month, and their mean delay in minutes\n");
  print_grid(&grid);
}

/* ---- Program ---- */

static int show_late_flights(const char* data, const char* output, char* code) {
  const int flights = import_table(data, "flights");
  const int airports = import_table(data, "airports");
  describe_table(flights);
  describe_table(airports);

  Airport airport;
  if (!find_airport(airports, code, &airport)) {
    fprintf(stderr, "no airport has the code %s\n", code);
    return EXIT_FAILURE;
  }
  printf("Flights from %s, %s, more than an hour late\n", airport.name, airport.city);
  const int late = search_late_flights(flights, code);
  const int sorted =
      require(RQXSortByField(flights, filter_named(flights, "delay"), late, QX_SORT_DESC),
              "RQXSortByField");
  print_worst(flights, sorted, airports);
  export_flights(flights, sorted, output);
  print_states(flights, airports);
  print_cross_table(flights);
  return EXIT_SUCCESS;
}

static void print_usage(FILE* out) {
  fprintf(out,
          "usage: qxe_example_flights DATA OUTPUT [AIRPORT]\n"
          "  DATA     directory of flights.csv, airports.csv and their catalogs\n"
          "  OUTPUT   existing directory that gets the exported files\n"
          "  AIRPORT  code of the airport that the flights leave; ORD unless told\n");
}

int main(int argc, char** argv) {
  if (argc == 2 && (strcmp(argv[1], "-h") == 0 || strcmp(argv[1], "--help") == 0)) {
    print_usage(stdout);
    return EXIT_SUCCESS;
  }
  if (argc < 3 || argc > 4) {
    print_usage(stderr);
    return 2;
  }
  char usual[] = "ORD";
  return show_late_flights(argv[1], argv[2], argc == 4 ? argv[3] : usual);
}
