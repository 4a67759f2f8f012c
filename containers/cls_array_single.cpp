#include <ravelin/containers/cls_array_single.hpp>

namespace ravelin {

float clsArraySingle::item(int16_t viIndex) const {
  if (viIndex < 0 || viIndex > getCount()) {
    raiseStyleB(CCEC_InvalidIndex, detail::kOpGetItem, viIndex, getCount());
  }
  return slot(viIndex);
}

void clsArraySingle::letItem(int16_t viIndex, float value) {
  if (viIndex < 0 || viIndex > getCount()) {
    raiseStyleB(CCEC_InvalidIndex, detail::kOpSetItem, viIndex, getCount());
  }
  slot(viIndex) = value;
}

}  // namespace ravelin
