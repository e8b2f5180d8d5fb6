// The array section: type, attribute block, element width, elements in use and allocated, elements;
// of a text list also its pool.
#include <string.h>

#include "persist/section_carrier.h"
#include "persist/section_check.h"
#include "storage/family.h"
#include "storage/setarray.h"

namespace qxe {

namespace {

/// A word of the machine that wrote the section: sizes of memory and offsets into it.
size_t word_size(const SectionReader& reader) {
  check_format(reader.description().ELF == 1 || reader.description().ELF == 2);
  return reader.description().ELF == 1 ? sizeof(int) : sizeof(long);
}

long read_word(SectionReader& reader) {
  return word_size(reader) == sizeof(int) ? read_field<int>(reader) : read_field<long>(reader);
}

/// Whether an array section of type `type` can hold the elements of `array`.
bool holds_type(const TBaseArray& array, int type) {
  if (array.GetDataType() != QX_DT_DOUBLE) return type == array.GetDataType();
  return is_data_type(type) && with_family_of(type, []<class Array>(std::type_identity<Array>) {
           return std::is_same_v<Array, TDoubleArray>;
         });
}

}  // namespace

void TBaseArray::SaveArray(SectionWriter& writer) {
  write_field(writer, GetDataType());
  writer.write(FUserArea, 1, kUserAreaSize);
  write_field(writer, FUnitSize);
  write_field(writer, FArraySize);
  write_field(writer, FAllocSize);
  writer.write_bulk(data_, static_cast<size_t>(FUnitSize), FArraySize);
}

/// All in front of the elements, for which there is room then. Returns their width in the section.
size_t TBaseArray::load_head(SectionReader& reader) {
  const bool text_list = GetDataType() == QX_DT_STRING;
  const auto unit = text_list ? word_size(reader) : static_cast<size_t>(ArrayUnitSize(*this));
  check_format(holds_type(*this, read_field<int>(reader)));
  reader.read(FUserArea, 1, kUserAreaSize);
  check_format(read_field<int>(reader) == static_cast<int>(unit));
  const int size = read_field<int>(reader);
  if (size < 0) throw CQXException(QX_ERROR_NEGATIVE_SIZE);
  check_format(read_word(reader) >= size);  // elements allocated: the spare ones are not kept
  reader.check_left(unit, size);
  InitArray(ArrayUnitSize(*this), size, false);
  return unit;
}

void TBaseArray::LoadArray(SectionReader& reader) {
  const size_t unit = load_head(reader);
  if (static_cast<size_t>(FUnitSize) == unit) return reader.read_bulk(data_, unit, FArraySize);
  const Block<char> elements = make_block<char>(static_cast<long>(unit) * FArraySize);
  reader.read_bulk(elements.get(), unit, FArraySize);
  resize_elements(data_, static_cast<size_t>(FUnitSize), elements.get(), unit, FArraySize);
}

unsigned TIntArray::LoadNumbers(SectionReader& reader, int first) {
  load_head(reader);
  return FArraySize == 0 ? 0 : reader.read_numbers(values(), FArraySize, first);
}

void TDoubleArray::LoadArray(SectionReader& reader) {
  TBaseArray::LoadArray(reader);
  const int type = FUserArea[kAreaExtendType];
  check_format(type == 0 || holds_type(*this, type));
  display_scale_ = FUserArea[kAreaScale];
  display_rounding_ = FUserArea[kAreaRounding];
}

void TNumericArray::LoadArray(SectionReader& reader) {
  constexpr int kMaxScale = 38;
  TBaseArray::LoadArray(reader);
  check_format(FUserArea[kAreaScale] <= kMaxScale && FUserArea[kAreaRounding] <= QX_ROUND_HALFEVEN);
  SetDecimalInfo(FUserArea[kAreaScale], FUserArea[kAreaRounding]);
}

// Text lists

void TStrArray::SaveArray(SectionWriter& writer) {
  Sweep();
  TBaseArray::SaveArray(writer);
  write_field(writer, FPCLast);
  writer.write_bulk(pool_, 1, FPCLast);
}

void TStrArray::LoadArray(SectionReader& reader) {
  TBaseArray::LoadArray(reader);
  const long used = read_word(reader);
  check_format(used >= 0);
  reader.check_left(1, used);
  pool_ = make_block<char>(used).release();
  pool_size_ = FPCLast = used;
  reader.read_bulk(pool_, 1, used);
  swept_ = is_swept(*this);
  if (!swept_) check_texts(*this);  // by this machine's own files never
}

// Sorted sets

void TSortedSetArray::SaveArray(SectionWriter& writer) {
  TIntArray::SaveArray(writer);
  write_field(writer, null_count_);
}

}  // namespace qxe
