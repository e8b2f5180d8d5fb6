// The filter section: id, name, origin, row pointers, type and values of the value list.
#include "persist/section_carrier.h"
#include "persist/section_check.h"
#include "storage/family.h"
#include "storage/filters.h"

namespace qxe {

void TFilter::SaveFilter(SectionWriter& writer) const {
  write_field(writer, FFilterID);
  write_name(writer, FFilterName);
  write_field(writer, FOrgTblID);
  write_field(writer, FOrgFltID);
  PVL->SaveArray(writer);
  write_field(writer, VL->GetDataType());
  VL->SaveArray(writer);
}

namespace {

std::unique_ptr<TBaseArray> new_value_list(int type) {
  if (!is_data_type(type)) throw CQXException(QX_ERROR_DATA_TYPE);
  return with_family_of(type,
                        []<class Array>(std::type_identity<Array>) -> std::unique_ptr<TBaseArray> {
                          return std::make_unique<Array>();
                        });
}

}  // namespace

TFilter::TFilter(SectionReader& reader, int id, bool join_key) : FFilterID(id) {
  InitTVL();
  check_format(read_field<int>(reader) == id);
  read_name(reader, FFilterName);
  check_format(FFilterName[0] != '\0');  // a copy of the column could not be named
  FOrgTblID = read_field<int>(reader);
  FOrgFltID = read_field<int>(reader);
  auto numbers = std::make_unique<TIntArray>();
  const unsigned highest = numbers->LoadNumbers(reader, 0);
  auto values = new_value_list(read_field<int>(reader));
  values->LoadArray(reader);
  check_value_list(*values, !join_key);
  check_format(numbers->FArraySize > 0 && numbers->GetInt(0) == 0);
  check_format(highest < static_cast<unsigned>(values->FArraySize));
  PVL = numbers.release();
  VL = values.release();
}

}  // namespace qxe
