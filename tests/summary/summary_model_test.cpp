// Summaries of random tables and sets: cells, names and output tables as the naive model says.
#include "summary/summary_model.h"

#include <algorithm>
#include <numeric>

#include "support/engine_test.h"
#include "support/random_data.h"
#include "support/raw_values.h"
#include "support/test_table.h"

namespace qxe::test {
namespace {

constexpr int kHandle = 3;
constexpr int kAllTypes[] = {QX_SUM_COUNT, QX_SUM_MAX, QX_SUM_MIN, QX_SUM_SUM, QX_SUM_AVG};
constexpr const char* kColumnNames[] = {"COUNT", "MAX", "MIN", "SUM", "AVERAGE"};
constexpr int kSparse = 20;
constexpr long kMaxCells = 5000;

const char* const kNames[] = {"north", "", "east", "a name", "west", "south-west", "7", ":"};
constexpr int kNameCount = 8;

int name_by_function(int, int, int dimNo, int, int, int catNo, char** name) {
  static char text[32];
  snprintf(text, sizeof text, "d%d c%d", dimNo, catNo);
  *name = text;
  return 0;
}

template <class T>
T value_in(const char* bytes) {
  T value{};
  memcpy(&value, bytes, sizeof value);
  return value;
}

/// What RQXSummaryRead left; a decimal has its info behind it.
Cell read_cell(int type, const char* bytes) {
  switch (type) {
    case QX_DT_INTEGER: return ints({value_in<int>(bytes)}).cells[0];
    case QX_DT_STRING: return std::string(bytes);
    case QX_DT_DECIMAL:
      return from_numeric(value_in<Numeric>(bytes),
                          value_in<NumericInfo>(bytes + sizeof(Numeric)).scale);
    default: return doubles({value_in<double>(bytes)}).cells[0];
  }
}

/// One summary of the engine beside one of the model.
class RandomSummaryTest : public EngineTest, public testing::WithParamInterface<int> {
 protected:
  RandomSummaryTest()
      : random_(static_cast<unsigned>(GetParam())),
        columns_(random_.table(random_rows())),
        table_(columns_, "source") {
    change_some_values();
    model_ = std::make_unique<NaiveModel>(columns_);
  }

  /// Some tables are longer than a block of the pass.
  int random_rows() {
    if (random_.chance(10)) return 0;
    return 1 + random_.below(random_.chance(10) ? 5000 : 200);
  }

  /// Single new values: those of tables of more than a hundred rows wait in the tail.
  void change_some_values() {
    const int rows = static_cast<int>(columns_[0].column.cells.size());
    if (rows == 0) return;
    const Columns others = random_.table(rows);
    for (int i = 0; i < 12; ++i) {
      const auto column = static_cast<size_t>(random_.below(7));
      const int row = 1 + random_.below(rows);
      const Cell& value = others[column].column.cells[static_cast<size_t>(row - 1)];
      columns_[column].column.cells[static_cast<size_t>(row - 1)] = value;
      RawValues raw(columns_[column].column.type, {value});
      require(RQXOverwriteRealEx(table_.id(), static_cast<int>(column) + 1, 1, row, 1, raw.data()),
              "RQXOverwriteRealEx");
    }
  }

  std::vector<std::string> random_dimensions() {
    std::vector<std::string> names;
    for (int i = random_.below(5); i > 0; --i) {
      names.push_back(columns_[static_cast<size_t>(random_.below(7))].name);
    }
    return names;
  }

  /// The values that are categories: those of the table, or of a set that is small beside them.
  SummaryModel model_of(const std::vector<std::string>& dimensions, const std::vector<int>& rows) {
    SummaryModel model(*model_, dimensions, model_->all_rows());
    const bool sparse = std::any_of(
        model.dimensions().begin(), model.dimensions().end(), [&](const auto& dimension) {
          return dimension.count / kSparse >= static_cast<int>(rows.size());
        });
    return sparse ? SummaryModel(*model_, dimensions, rows) : model;
  }

  int open(SummaryModel& model, int set, int measure) {
    std::vector<_TRDimensionDef> records;
    for (const ModelDimension& dimension : model.dimensions()) {
      records.push_back({table_.filter(dimension.column), "\x7f anything"});
    }
    return RQXSummaryOpen(kHandle, table_.id(), set, static_cast<int>(records.size()),
                          records.data(), measure);
  }

  /// Maps, names and functions for some of the dimensions. The filters have no unused values.
  int open_with_categories(SummaryModel& model, int set, int measure) {
    std::vector<_TDimensionDef> records;
    std::vector<std::vector<int>> maps(model.dimensions().size());
    std::vector<char*> names;
    for (const char* const name : kNames) names.push_back(const_cast<char*>(name));
    for (size_t i = 0; i < maps.size(); ++i) {
      ModelDimension& dimension = model.dimensions()[i];
      _TDimensionDef& record = records.emplace_back();
      record = {table_.filter(dimension.column), -1, nullptr, nullptr, nullptr};
      if (i > 0 && random_.chance(40)) continue;  // one at least
      record.nCategory = 1 + random_.below(kNameCount);
      for (size_t value = 0; value < dimension.values.size(); ++value) {
        maps[i].push_back(random_.below(record.nCategory));
      }
      record.piCatNo = maps[i].data();
      if (random_.chance(50)) {
        record.ppCatName = names.data();
      } else {
        record.pfnCatName = name_by_function;
      }
      dimension.categories = maps[i];
      dimension.count = record.nCategory;
    }
    return QXSummaryOpen(kHandle, table_.id(), set, static_cast<int>(records.size()),
                         records.data(), measure);
  }

  void expect_cell(const SummaryModel& model, int done, bool with_measure, long number) {
    Coordinates coordinates = model.coordinates(number);
    const ModelCell& wanted = model.cell(coordinates);
    for (const int type : {QX_SUM_COUNT, QX_SUM_MAX, QX_SUM_MIN, QX_SUM_SUM}) {
      int measure_type = -1, value_type = -1, rows = -1;
      alignas(Numeric) char value[4096] = "untouched";
      const int status = RQXSummaryRead(kHandle, type, coordinates.data(), &measure_type,
                                        &value_type, &rows, value);
      if ((done & type) == 0) {
        ASSERT_EQ(hex(status), hex(QX_ERROR_ROW_RANGE));
        continue;
      }
      ASSERT_EQ(hex(status), hex(0));
      ASSERT_EQ(rows, wanted.count);
      ASSERT_EQ(value_type, type == QX_SUM_COUNT ? QX_DT_INTEGER : model.type_of(type));
      if (with_measure && rows == 0) {
        ASSERT_STREQ(value, "untouched");
      } else {
        ASSERT_EQ(read_cell(value_type, value), model.result(type, wanted)) << "type " << type;
      }
    }
  }

  void expect_cells(const SummaryModel& model, int done, bool with_measure) {
    const long count = model.cell_count();
    const long step = std::max<long>(1, count / 150);
    for (long cell = count == 1 ? 0 : random_.below(static_cast<int>(step)); cell < count;
         cell += step) {
      expect_cell(model, done, with_measure, cell);
    }
  }

  /// The cells of an output table, in its order.
  static std::vector<Coordinates> rows_of(const SummaryModel& model, bool non_empty_only) {
    std::vector<Coordinates> rows;
    for (long i = 0; i < model.cell_count(); ++i) {
      const Coordinates coordinates = model.coordinates(i);
      if (!non_empty_only || model.cell(coordinates).count > 0) rows.push_back(coordinates);
    }
    return rows;
  }

  static std::string category_text(const ModelDimension& dimension, const _TDimensionDef& record,
                                   int number, int category) {
    const size_t width = std::to_string(dimension.count + 2).size();
    const std::string digits = std::to_string(category);
    char* name = nullptr;
    if (record.ppCatName != nullptr) {
      name = record.ppCatName[category];
    } else {
      name_by_function(0, 0, number, 0, 0, category, &name);
    }
    return std::string(width - digits.size(), ' ') + digits + ":" + name;
  }

  void expect_output(SummaryModel& model, int done) {
    const bool non_empty_only = random_.chance(50);
    const int mask = random_.below(32);
    const std::vector<Coordinates> rows = rows_of(model, non_empty_only);
    _TDimensionDef records[QX_MAX_DIM];
    int table = 0, set = 0, nDim = 0, measure = 0, mask_now = 0;
    ASSERT_EQ(QXSummaryStatus(kHandle, &table, &set, &nDim, records, &measure, &mask_now), 1);

    const int id = RQXSummaryIntoRealTable2(kHandle, mask, non_empty_only);
    ASSERT_GE(id, 0) << hex(id);
    const TestTable output = TestTable::existing(id);
    ASSERT_EQ(output.total_rows(), static_cast<int>(rows.size()));
    int filters[512];
    int next = 0;
    const int count = RQXGetFilterIDList(id, filters);
    const auto next_column = [&](const std::string& name) {
      EXPECT_LT(next, count) << name;
      const std::string found = RQXGetFilterNameR1(id, filters[next++]);
      EXPECT_EQ(found.substr(0, name.size()), name);
      return output.column(found);
    };

    for (size_t d = 0; d < model.dimensions().size(); ++d) {
      const ModelDimension& dimension = model.dimensions()[d];
      const Column found = next_column(dimension.column);
      std::vector<Cell> wanted;
      for (const Coordinates& row : rows) {
        wanted.push_back(
            dimension.categories.empty()
                ? dimension.values[static_cast<size_t>(row[d])]
                : Cell{category_text(dimension, records[d], static_cast<int>(d), row[d])});
      }
      ASSERT_EQ(found.cells, wanted) << dimension.column;
    }
    for (int i = 0; i < 5; ++i) {
      const int type = kAllTypes[i];
      const int needed = type == QX_SUM_AVG ? QX_SUM_COUNT | QX_SUM_SUM : type;
      if ((mask & type) == 0 || (done & needed) != needed) continue;
      const Column found = next_column(kColumnNames[i]);
      std::vector<Cell> wanted;
      for (const Coordinates& row : rows) wanted.push_back(model.result(type, model.cell(row)));
      ASSERT_EQ(found.type, model.type_of(type));
      ASSERT_EQ(found.cells, wanted) << kColumnNames[i];
      if (type == QX_SUM_AVG && static_cast<long>(rows.size()) == model.cell_count()) {
        model.put_averages_for_sums();
      }
    }
    EXPECT_EQ(next, count);
    require(RQXDeleteTable(id), "RQXDeleteTable");
  }

  void run_summary() {
    const std::vector<int> rows = random_.set_of(model_->total_rows());
    std::vector<std::string> dimensions = random_dimensions();
    const bool with_categories = random_.chance(30) && !dimensions.empty();
    SummaryModel model = with_categories ? SummaryModel(*model_, dimensions, model_->all_rows())
                                         : model_of(dimensions, rows);
    const std::string measure =
        random_.chance(15) ? "" : columns_[static_cast<size_t>(random_.below(7))].name;
    const int filter = measure.empty() ? 0 : table_.filter(measure);
    const int set = table_.add_set(rows);
    const int mask = random_.chance(50) ? 15 : random_.below(16);
    const int tables = RQXGetNTable();
    if (!with_categories && model.cell_count() > kMaxCells) return;
    // Numbers of a map are those before unused values go, so they go now.
    if (with_categories) require(RQXCondenseRealTable(table_.id()), "RQXCondenseRealTable");
    ASSERT_EQ(
        hex(with_categories ? open_with_categories(model, set, filter) : open(model, set, filter)),
        hex(0));
    if (model.cell_count() <= kMaxCells) check_summary(model, rows, measure, mask);
    ASSERT_EQ(RQXSummaryClose(kHandle), 0);
    EXPECT_EQ(RQXGetNTable(), tables);
  }

  void check_summary(SummaryModel& model, const std::vector<int>& rows, const std::string& measure,
                     int mask) {
    int done = -1;
    ASSERT_EQ(hex(RQXSummaryExec(kHandle, mask, &done)), hex(0));
    const bool is_string = !measure.empty() && model_->column(measure).type == QX_DT_STRING;
    const int possible = measure.empty() ? 1 : mask & (is_string ? 7 : 15);
    ASSERT_EQ(done, measure.empty() ? 1 : possible == 0 ? 0 : possible | 1);
    if (done == 0) return;
    model.run(rows, measure);
    expect_cells(model, done, !measure.empty());
    for (int output = 0; output < 3 && !HasFatalFailure(); ++output) {
      expect_output(model, done);
    }
    expect_cells(model, done, !measure.empty());
  }

  RandomData random_;
  Columns columns_;
  TestTable table_;
  std::unique_ptr<NaiveModel> model_;
};

TEST_P(RandomSummaryTest, EqualsTheNaiveModel) {
  for (int round = 0; round < 12 && !HasFatalFailure(); ++round) {
    SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", round " + std::to_string(round));
    run_summary();
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomSummaryTest, testing::Range(1, 31));

}  // namespace
}  // namespace qxe::test
