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

#include <atomic>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace ravelin {
namespace detail {

// Room for the shared pointer's control block beside the value, so that both take one allocation
// (the block holds a table pointer, two counts, the value's address, the deleter and the
// allocator).
inline constexpr std::size_t kControlBlockRoom = 64;

// The start of the allocation that holds a shared value: its link in the thread's list of values
// waiting to be destroyed, how to destroy the value, and the room for the control block. The
// allocation is freed when both the value and the control block are gone, in either order (weak
// references keep the block after the value).
struct ReleaseNode {
  ReleaseNode* next = nullptr;
  void (*destroyValue)(ReleaseNode* node) noexcept = nullptr;
  std::atomic<int> holders{1};  // the value, and the control block while it uses the room
  alignas(std::max_align_t) std::byte controlBlockRoom[kControlBlockRoom];

  // Called by the value and by the control block when each is gone.
  void drop() noexcept {
    if (holders.fetch_sub(1, std::memory_order_acq_rel) == 1)
      ::operator delete(static_cast<void*>(this));
  }
};

// Destroys the node's value now, or, while a release is running on this thread, leaves it for
// that release. Neither allocates nor throws.
void releaseDeferred(ReleaseNode* node) noexcept;

// The allocation of one T: the node, then the value. Standard layout, so the node's address is
// the allocation's.
template <typename T>
struct ReleaseBox {
  static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

  ReleaseNode node;
  alignas(T) std::byte valueRoom[sizeof(T)];

  T* value() noexcept { return std::launder(reinterpret_cast<T*>(valueRoom)); }

  template <typename... A>
  static ReleaseBox* make(A&&... arguments) {
    static_assert(std::is_standard_layout_v<ReleaseBox>);
    void* memory = ::operator new(sizeof(ReleaseBox));
    auto* box = ::new (memory) ReleaseBox;
    try {
      ::new (static_cast<void*>(box->valueRoom)) T(std::forward<A>(arguments)...);
    } catch (...) {
      ::operator delete(memory);
      throw;
    }
    box->node.destroyValue = [](ReleaseNode* node) noexcept {
      reinterpret_cast<ReleaseBox*>(node)->value()->~T();
      node->drop();
    };
    return box;
  }
};

// The deleter of the shared pointer: the last release hands the node to releaseDeferred.
struct NodeReleaser {
  ReleaseNode* node;
  template <typename P>
  void operator()(P* /*value*/) const noexcept {
    releaseDeferred(node);
  }
};

// The allocator of the control block: the node's room when the block fits, the heap otherwise.
template <typename U>
struct ControlBlockAllocator {
  using value_type = U;

  explicit ControlBlockAllocator(ReleaseNode* owner) noexcept : node(owner) {}
  template <typename V>
  ControlBlockAllocator(const ControlBlockAllocator<V>& other) noexcept : node(other.node) {}

  static constexpr bool kFits =
      sizeof(U) <= kControlBlockRoom && alignof(U) <= alignof(std::max_align_t);

  U* allocate(std::size_t count) {
    if constexpr (kFits) {
      if (count == 1) {
        node->holders.fetch_add(1, std::memory_order_relaxed);
        return reinterpret_cast<U*>(node->controlBlockRoom);
      }
    }
    return std::allocator<U>().allocate(count);
  }
  void deallocate(U* block, std::size_t count) noexcept {
    if constexpr (kFits) {
      if (count == 1) {
        node->drop();
        return;
      }
    }
    std::allocator<U>().deallocate(block, count);
  }

  template <typename V>
  bool operator==(const ControlBlockAllocator<V>& other) const noexcept {
    return node == other.node;
  }

  ReleaseNode* node;
};

}  // namespace detail

// A shared T built from the arguments, released without recursion (see above). T may be const
// (std::shared_ptr<const SafeArray>); an object deriving from std::enable_shared_from_this
// answers shared_from_this() as usual.
template <typename T, typename... A>
std::shared_ptr<T> makeDeferredShared(A&&... arguments) {
  using Stored = std::remove_const_t<T>;
  auto* box = detail::ReleaseBox<Stored>::make(std::forward<A>(arguments)...);
  // Should the control block not fit the room and its allocation fail, the shared pointer hands
  // the value to the deleter.
  return std::shared_ptr<T>(box->value(), detail::NodeReleaser{&box->node},
                            detail::ControlBlockAllocator<Stored>(&box->node));
}

}  // namespace ravelin
