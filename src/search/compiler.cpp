#include "search/compiler.h"

#include <algorithm>

#include "search/compiler_int.h"
#include "search/compiler_steps.h"
#include "search/compiler_values.h"

namespace qxe {

int mpp_compile(void* block) {
  return run_pool_step(block);
}

_RawIntArrayRangeInfo GetIntRange(int n, const int* data) {
  if (n < 0) throw CQXException(QX_ERROR_NEGATIVE_ROWS);
  _RawIntArrayRangeInfo range;
  for (int i = 0; i < n; ++i) {
    const bool null = data[i] == QX_NULL_INT;
    range.nulls += null;
    range.min = std::min(range.min, null ? range.min : data[i]);
    range.max = std::max(range.max, data[i]);  // NULL is the lowest value
  }
  return range;
}

bool WillBeCompiledBySorting(int DataType, int n, const void* data, _RawIntArrayRangeInfo* out) {
  if (DataType != QX_DT_INTEGER) return false;
  *out = GetIntRange(n, static_cast<const int*>(data));
  // Deliberate: the bound wraps at 32 bits here, unlike in Compile.
  const int present = n - out->nulls;
  const int bound = static_cast<int>(static_cast<unsigned>(present) * 8 + 1000);
  return present >= 1 && bound > address_span(*out);
}

void check_raw_values(int type, int width) {
  if (!is_data_type(type)) {
    throw CQXException(report("Compile", QX_ERROR_TYPE_MISMATCH, "Illegal data type  : %d", type));
  }
  const bool fits = with_family_of(type, [&]<class Array>(std::type_identity<Array>) {
    return width == static_cast<int>(sizeof(typename Family<Array>::Value));
  });
  if (!fits) {
    throw CQXException(report("Compile", QX_ERROR_DATA_WIDTH, "Invalid Parameter : Width1Unit"));
  }
}

namespace {

CompiledColumn compile(int size, int type, int width, const void* data,
                       const _RawIntArrayRangeInfo* range, bool mpp) {
  if (size < 1) {
    throw CQXException(report("Compile", QX_ERROR_NO_RECORD, "Invalid Parameter : WholeSize"));
  }
  check_raw_values(type, width);
  return with_family_of(type, [&]<class Array>(std::type_identity<Array>) {
    Block<int> numbers = make_block<int>(size);
    auto list = compile_values<Array>(static_cast<const typename Family<Array>::Value*>(data), size,
                                      numbers.get(), false, compile_workers(size, mpp), range);
    return CompiledColumn{std::move(numbers), list.size, as_bytes(std::move(list.values))};
  });
}

}  // namespace

CompiledColumn Compile(int WholeSize, int DataType, int Width1Unit, const void* data,
                       const _RawIntArrayRangeInfo* range) {
  return compile(WholeSize, DataType, Width1Unit, data, range, false);
}

CompiledColumn MppCompile(int WholeSize, int DataType, int Width1Unit, const void* data) {
  return compile(WholeSize, DataType, Width1Unit, data, nullptr, true);
}

}  // namespace qxe
