// Runs a fuzz input on a thread with a small stack of its own. Recursion that lacks a depth
// guard then overflows at input sizes a fuzzer reaches in seconds, instead of only at the
// megabytes that the main thread's 8 MB take; below the stack lies a page that is never
// accessible, so an overflow faults there and the address sanitizer reports a stack overflow.
// POSIX only, as the fuzz build is.
//
// libFuzzer counts a deeper stack as progress (the stack-depth coverage, in the thread-local
// __sancov_lowest_stack), which leads it towards deeper nesting; run() hands the depth reached
// on the thread back to the calling thread, where libFuzzer reads it.
#pragma once

#include <pthread.h>
#include <sanitizer/asan_interface.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

// The lowest stack address reached on the thread, kept by the coverage instrumentation.
extern "C"
    __attribute__((tls_model("initial-exec"))) thread_local std::uintptr_t __sancov_lowest_stack;

namespace ravelin::fuzzing {

class SmallStack {
 public:
  explicit SmallStack(std::size_t bytes) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    size_ = (bytes + page - 1) / page * page;
    guard_ = page;
    void* mapped = mmap(nullptr, guard_ + size_, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (mapped == MAP_FAILED) fail("cannot map the stack");
    if (mprotect(mapped, guard_, PROT_NONE) != 0) fail("cannot protect the guard page");
    base_ = static_cast<unsigned char*>(mapped);
  }
  ~SmallStack() { munmap(base_, guard_ + size_); }
  SmallStack(const SmallStack&) = delete;
  SmallStack& operator=(const SmallStack&) = delete;

  std::size_t size() const { return size_; }

  // Runs `work` on a new thread on this stack and waits for it. An exception that leaves
  // `work` is a bug of the harness: it aborts, as it would on the main thread.
  template <typename Work>
  void run(Work& work) {
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0 ||
        pthread_attr_setstack(&attributes, base_ + guard_, size_) != 0) {
      fail("cannot set the thread's stack");
    }
    Call<Work> call{&work, 0};
    pthread_t thread;
    if (pthread_create(&thread, &attributes, &trampoline<Work>, &call) != 0) {
      fail("cannot start the thread");
    }
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    // The depth reached there, as if it had been reached here.
    const auto top = reinterpret_cast<std::uintptr_t>(base_ + guard_ + size_);
    if (call.lowest >= reinterpret_cast<std::uintptr_t>(base_) && call.lowest < top) {
      char here = 0;
      const std::uintptr_t reached = reinterpret_cast<std::uintptr_t>(&here) - (top - call.lowest);
      if (reached < __sancov_lowest_stack) __sancov_lowest_stack = reached;
    }
  }

  // Runs `work` as run() does and returns the most bytes of the stack it used, counted from the
  // top (the thread's own start-up data, which the C library keeps there, included).
  template <typename Work>
  std::size_t measure(Work& work) {
    unsigned char* const stack = base_ + guard_;
    ASAN_UNPOISON_MEMORY_REGION(stack, size_);
    std::memset(stack, kPaint, size_);
    run(work);
    ASAN_UNPOISON_MEMORY_REGION(stack, size_);
    std::size_t untouched = 0;
    while (untouched < size_ && stack[untouched] == kPaint)
      ++untouched;
    return size_ - untouched;
  }

 private:
  static constexpr unsigned char kPaint = 0xA5;

  [[noreturn]] static void fail(const char* what) {
    std::fprintf(stderr, "SmallStack: %s\n", what);
    std::abort();
  }

  template <typename Work>
  struct Call {
    Work* work;
    std::uintptr_t lowest;
  };

  template <typename Work>
  static void* trampoline(void* argument) {
    auto* call = static_cast<Call<Work>*>(argument);
    __sancov_lowest_stack = UINTPTR_MAX;
    try {
      (*call->work)();
    } catch (...) {
      std::terminate();
    }
    call->lowest = __sancov_lowest_stack;
    return nullptr;
  }

  unsigned char* base_ = nullptr;
  std::size_t guard_ = 0;
  std::size_t size_ = 0;
};

}  // namespace ravelin::fuzzing
