// Shared values whose release never recurses on the machine stack.
//
// A value that holds others (an array of arrays, a record holding an array, a collection holding
// the previous collection) destroys what it holds inside its own destructor, one set of stack
// frames per level of nesting, so a chain a few hundred thousand levels deep would overflow the
// stack when it is let go. A value made by makeDeferredShared is destroyed by its last release
// only when no such destruction is already running on the thread; otherwise it waits in a list of
// the thread, which the outermost release empties in a loop. Either way every value is destroyed
// before the outermost release returns.
//
// Arrays and records inside Variant are made this way, and so is every library object
// (makeObject in object.hpp, which the member tables' factories use).
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace ravelin {
namespace detail {

// A value waiting to be destroyed: its link in the thread's list and how to destroy it.
struct ReleaseNode {
  ReleaseNode* next = nullptr;
  void (*destroy)(ReleaseNode* node) noexcept = nullptr;
};

// Destroys the node's value now, or, while a release is running on this thread, leaves it for
// that release. Neither allocates nor throws.
void releaseDeferred(ReleaseNode* node) noexcept;

// The value together with its link, in one allocation.
template <typename T>
struct ReleaseBox final : ReleaseNode {
  template <typename... A>
  explicit ReleaseBox(A&&... arguments) : value(std::forward<A>(arguments)...) {
    destroy = &destroyBox;
  }
  static void destroyBox(ReleaseNode* node) noexcept { delete static_cast<ReleaseBox*>(node); }

  T value;
};

// The deleter of the shared pointer: the last release hands the box to releaseDeferred.
struct BoxReleaser {
  ReleaseNode* box;
  template <typename P>
  void operator()(P* /*value*/) const noexcept {
    releaseDeferred(box);
  }
};

}  // namespace detail

// A shared T built from the arguments, released without recursion (see above). T may be const
// (std::shared_ptr<const SafeArray>); an object deriving from std::enable_shared_from_this
// answers shared_from_this() as usual.
template <typename T, typename... A>
std::shared_ptr<T> makeDeferredShared(A&&... arguments) {
  auto* box = new detail::ReleaseBox<std::remove_const_t<T>>(std::forward<A>(arguments)...);
  // Should the control block fail to allocate, the shared pointer hands the box to the deleter.
  return std::shared_ptr<T>(&box->value, detail::BoxReleaser{box});
}

}  // namespace ravelin
