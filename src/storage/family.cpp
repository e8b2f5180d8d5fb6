#include "storage/family.h"

namespace qxe {

const char QX_NULL_STR[2] = {'\0', '\0'};

namespace {

uint64_t load8(const char* bytes) {
  uint64_t word = 0;
  memcpy(&word, bytes, sizeof word);
  return word;
}

uint64_t load4(const char* bytes) {
  uint32_t word = 0;
  memcpy(&word, bytes, sizeof word);
  return word;
}

/// Both halves of the product, folded: every bit of the operands reaches every bit of the result.
uint64_t folded_product(uint64_t left, uint64_t right) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = Wide{left} * right;
  return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
}

}  // namespace

uint64_t Family<TStrArray>::hash(const char* text, size_t length) {
  constexpr uint64_t kFirst = 0xa0761d6478bd642f;
  constexpr uint64_t kSecond = 0xe7037ed1a0b428db;
  uint64_t result = length ^ kSecond;
  for (; length > 16; length -= 16, text += 16) {
    result = folded_product(load8(text) ^ kFirst, load8(text + 8) ^ result);
  }
  // The last bytes, in two words that may overlap.
  uint64_t head = 0;
  uint64_t tail = 0;
  if (length >= 8) {
    head = load8(text);
    tail = load8(text + length - 8);
  } else if (length >= 4) {
    head = load4(text);
    tail = load4(text + length - 4);
  } else if (length > 0) {
    const auto byte = [&](size_t i) {
      return static_cast<uint64_t>(static_cast<uint8_t>(text[i]));
    };
    head = byte(0) << 16 | byte(length / 2) << 8 | byte(length - 1);
  }
  return folded_product(head ^ kFirst, tail ^ result ^ kSecond);
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
