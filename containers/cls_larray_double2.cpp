#include <algorithm>
#include <cmath>
#include <ravelin/containers/internal/allocate_space_member.hpp>
#include <ravelin/containers/cls_larray_double2.hpp>
#include <ravelin/frame/class_builder.hpp>

namespace ravelin {
namespace {

// A strict weak order on doubles that also holds with NaN (a C++ caller can store one): NaN
// sorts after every number.
bool ascending(double a, double b) {
  if (std::isnan(a)) return false;
  return std::isnan(b) || a < b;
}

}  // namespace

double clsLArrayDouble2::Item1(int32_t vlIndex) const {
  if (!isUsed(vlIndex)) raiseError(CCEC_InvalidIndex, String(), u"clsLArrayDouble2.item()");
  return at(vlIndex).value1;
}

void clsLArrayDouble2::letItem1(int32_t vlIndex, double vdValue) {
  if (!isUsed(vlIndex)) raiseError(CCEC_InvalidIndex, String(), u"clsLArrayDouble2.itemKey()");
  at(vlIndex).value1 = vdValue;
}

double clsLArrayDouble2::Item2(int32_t vlIndex) const {
  if (!isUsed(vlIndex)) raiseError(CCEC_InvalidIndex, String(), u"clsLArrayDouble2.item2()");
  return at(vlIndex).value2;
}

void clsLArrayDouble2::letItem2(int32_t vlIndex, double vdValue) {
  if (!isUsed(vlIndex)) raiseError(CCEC_InvalidIndex, String(), u"clsLArrayDouble2.item()");
  at(vlIndex).value2 = vdValue;
}

void clsLArrayDouble2::orderValues(int32_t vlOptions) {
  if (vlOptions < 0 || vlOptions > 2) {
    raiseStyleA(CCEC_InvalidParameter, kClassName, u".orderValues()");
  }
  auto* first = &at(0);
  auto* last = first + getCount();
  if (vlOptions == 2) {
    std::stable_sort(first, last,
                     [](const auto& a, const auto& b) { return ascending(a.value2, b.value2); });
  } else {
    std::stable_sort(first, last,
                     [](const auto& a, const auto& b) { return ascending(a.value1, b.value1); });
  }
}

ClassInfo clsLArrayDouble2::describe() {
  ClassBuilder<clsLArrayDouble2, Base> builder(
      kClassName, [](clsLArrayDouble2& self) -> Base& { return self; });
  publishCopyInterface(builder);
  publishAllocateSpacePublic<int32_t>(builder, u"vlSize");
  return builder.method(u"add", &clsLArrayDouble2::add, {u"vdValue1", u"vdValue2"})
      .get(u"Item1", &clsLArrayDouble2::Item1, {u"vlIndex"})
      .let(u"Item1", &clsLArrayDouble2::letItem1, {u"vlIndex", u"vdValue"})
      .get(u"Item2", &clsLArrayDouble2::Item2, {u"vlIndex"})
      .let(u"Item2", &clsLArrayDouble2::letItem2, {u"vlIndex", u"vdValue"})
      .method(u"remove", &clsLArrayDouble2::remove, {u"vlIndex"})
      .method(u"removeLast", &clsLArrayDouble2::removeLast)
      .method(u"removeAll", &clsLArrayDouble2::removeAll)
      .method(u"getCount", &clsLArrayDouble2::getCount)
      .method(u"orderValues", &clsLArrayDouble2::orderValues, {optional(u"vlOptions", 0)})
      .build();
}

}  // namespace ravelin
