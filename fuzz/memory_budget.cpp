// The memory budget of a fuzz target whose input may ask for as much memory as it likes (a
// script's ReDim, a member's allocateSpacePublic): running out is an error the caller sees, not
// a bug. So that such a request ends that way instead of exhausting the fuzzer's memory limit,
// the program's allocations share a budget: past it, operator new throws std::bad_alloc as a
// full heap would. Linked into the targets that need it (CMakeLists.txt).
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kMemoryBudget = std::size_t{256} << 20;
std::atomic<std::size_t> liveBytes{0};

// Each block carries its size in front, so that a release can give it back to the budget.
struct alignas(std::max_align_t) BlockHeader {
  std::size_t size;
};

void* allocateCounted(std::size_t size) {
  std::size_t live = liveBytes.load(std::memory_order_relaxed);
  do {
    if (size > kMemoryBudget - live) throw std::bad_alloc();
  } while (!liveBytes.compare_exchange_weak(live, live + size, std::memory_order_relaxed));
  auto* header = static_cast<BlockHeader*>(std::malloc(sizeof(BlockHeader) + size));
  if (header == nullptr) {
    liveBytes.fetch_sub(size, std::memory_order_relaxed);
    throw std::bad_alloc();
  }
  header->size = size;
  return header + 1;
}

void releaseCounted(void* block) noexcept {
  if (block == nullptr) return;
  BlockHeader* header = static_cast<BlockHeader*>(block) - 1;
  liveBytes.fetch_sub(header->size, std::memory_order_relaxed);
  std::free(header);
}

}  // namespace

// Every form of the unaligned operators goes through the budget: the sanitizer runtime defines
// them all, and a block must be released by the same family that allocated it.
void* operator new(std::size_t size) {
  return allocateCounted(size);
}
void* operator new[](std::size_t size) {
  return allocateCounted(size);
}
void operator delete(void* block) noexcept {
  releaseCounted(block);
}
void operator delete[](void* block) noexcept {
  releaseCounted(block);
}
void operator delete(void* block, std::size_t) noexcept {
  releaseCounted(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  releaseCounted(block);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return allocateCounted(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  releaseCounted(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  releaseCounted(block);
}
