// From raw values to a column as a table stores it: row numbers from 1, value number 0 for NULL.
#include "search/compiler_steps.h"
#include "search/compiler_values.h"
#include "storage/filters.h"

namespace qxe {

namespace {

template <class Array>
Column column_of(int type, int rows, int total_rows, const typename Family<Array>::Value* data,
                 bool mpp) {
  Block<int> numbers = make_block<int>(static_cast<long>(total_rows) + 1);
  auto list =
      compile_values<Array>(data, rows, numbers.get() + 1, true, compile_workers(rows, mpp));
  numbers[0] = 0;
  memset(numbers.get() + rows + 1, 0, sizeof(int) * static_cast<size_t>(total_rows - rows));
  const auto make_values = mpp ? mpp_make_value_array : make_value_array;
  auto values = make_values(type, list.size, as_bytes(std::move(list.values)));
  return {std::make_unique<TIntArray>(total_rows + 1, std::move(numbers)), std::move(values), true};
}

std::unique_ptr<TFilter> filter_of(int id, const char* name, int type, int rows, int width,
                                   const void* data, bool mpp) {
  auto filter = std::make_unique<TFilter>(id, name);
  check_raw_values(type, width);
  filter->adopt(compile_column(type, rows, rows, data, mpp));
  return filter;
}

}  // namespace

Column compile_column(int type, int rows, int total_rows, const void* data, bool mpp) {
  if (rows < 0) throw CQXException(QX_ERROR_ROW_SIZE);
  return with_family_of(type, [&]<class Array>(std::type_identity<Array>) {
    return column_of<Array>(type, rows, total_rows,
                            static_cast<const typename Family<Array>::Value*>(data), mpp);
  });
}

std::unique_ptr<TFilter> GenFilter2(int id, const char* name, int type, int rows, int width,
                                    const void* data) {
  return filter_of(id, name, type, rows, width, data, false);
}

std::unique_ptr<TFilter> MppGenFilter2(int id, const char* name, int type, int rows, int width,
                                       const void* data) {
  return filter_of(id, name, type, rows, width, data, true);
}

}  // namespace qxe
