#include "storage/family.h"

namespace qxe {

const char QX_NULL_STR[2] = {'\0', '\0'};

uint64_t Family<TStrArray>::hash(Value value) {
  const size_t length = strlen(value);
  uint64_t result = length;
  size_t i = 0;
  for (; i + 8 <= length; i += 8) {
    uint64_t word = 0;
    memcpy(&word, value + i, 8);
    result = mix_bits(result ^ word);
  }
  uint64_t tail = 0;
  memcpy(&tail, value + i, length - i);
  return mix_bits(result ^ tail);
}

namespace {

template <class Value>
Block<Value> as_block_of(Block<char> bytes) {
  return Block<Value>(reinterpret_cast<Value*>(bytes.release()));
}

}  // namespace

std::unique_ptr<TBaseArray> make_value_array(int type, int count, Block<char> values) {
  return with_family_of(type, [&]<class Array>(std::type_identity<Array>) {
    std::unique_ptr<TBaseArray> array = std::make_unique<Array>(
        count, as_block_of<typename Family<Array>::Value>(std::move(values)));
    SetArrayDataTypeEx(*array, type);
    return array;
  });
}

void copy_type_info(const TBaseArray& source, TBaseArray& target) {
  memcpy(target.FUserArea, source.FUserArea, sizeof target.FUserArea);
  if (target.GetDataType() == QX_DT_DECIMAL) {
    static_cast<TNumericArray&>(target).SetDecimalInfo(
        static_cast<const TNumericArray&>(source).GetDecimalInfo());
  } else if (target.GetDataType() == QX_DT_DOUBLE) {
    static_cast<TDoubleArray&>(target).copy_display(static_cast<const TDoubleArray&>(source));
  }
}

std::unique_ptr<TBaseArray> make_null_array(int type) {
  return with_family_of(type, [&]<class Array>(std::type_identity<Array>) {
    using Value = typename Family<Array>::Value;
    Block<char> values = make_block<char>(sizeof(Value));
    const Value null = Family<Array>::null();
    memcpy(values.get(), &null, sizeof null);
    return make_value_array(type, 1, std::move(values));
  });
}

}  // namespace qxe
