#include <ravelin/frame/deferred_release.hpp>

namespace ravelin::detail {
namespace {

// The values waiting on this thread (last in, first destroyed) and whether a release is running.
// Plain values with no destructor, so that releases made while the thread's other thread-local
// objects are destroyed at its end still find them.
thread_local ReleaseNode* waiting = nullptr;
thread_local bool releasing = false;

}  // namespace

void releaseDeferred(ReleaseNode* node) noexcept {
  if (releasing) {
    node->next = waiting;
    waiting = node;
    return;
  }
  releasing = true;
  node->destroyValue(node);
  // Each destruction may leave more values waiting; they are taken here, one level at a time.
  while (waiting != nullptr) {
    ReleaseNode* next = waiting;
    waiting = next->next;
    next->destroyValue(next);
  }
  releasing = false;
}

}  // namespace ravelin::detail
