#include "search/row_parts.h"

#include "parallel/mpp_memory.h"

namespace qxe {

std::unique_ptr<TSetArray> packed_parts(std::unique_ptr<TSetArray> room,
                                        const std::vector<RowPart>& parts) {
  long total = 0;
  for (const RowPart& part : parts) total += part.count;
  const bool stay = total >= room->FArraySize / 2;
  auto result = stay ? nullptr : std::make_unique<TSetArray>(static_cast<int>(total), false);
  int* out = stay ? room->PIntAr() : result->PIntAr();
  for (const RowPart& part : parts) {
    const size_t bytes = sizeof(int) * static_cast<size_t>(part.count);
    if (stay) {
      if (out != part.rows) memmove(out, part.rows, bytes);
    } else {
      MppMemCpy(out, part.rows, bytes);
    }
    out += part.count;
  }
  if (stay) {
    room->SetArraySize(static_cast<int>(total));
    room->AdjustMemArea();
    return room;
  }
  memcpy(result->FUserArea, room->FUserArea, sizeof result->FUserArea);
  result->SetSetName(room->GetSetName());
  return result;
}

}  // namespace qxe
