// The allocateSpacePublic member that the directly sized arrays publish alike: a size, and two
// optional flags taken by reference (keep the values: true; reset the count: false).
#pragma once

#include <ravelin/frame/class_builder.hpp>

namespace ravelin {

template <typename Index, typename C, typename PrivateBase>
ClassBuilder<C, PrivateBase>& publishAllocateSpacePublic(ClassBuilder<C, PrivateBase>& builder,
                                                         StringView sizeName) {
  return builder.method(
      u"allocateSpacePublic",
      [](C& self, Index size, bool& vbPreserveValues, bool& vbResetCountVariable) {
        self.allocateSpacePublic(size, vbPreserveValues, vbResetCountVariable);
      },
      {Param(sizeName), optional(u"vbPreserveValues", true),
       optional(u"vbResetCountVariable", false)});
}

}  // namespace ravelin
