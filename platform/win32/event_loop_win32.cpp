// The event loop of Windows: the multimedia timer's callback, on the timer service's thread,
// only queues the expiry and wakes the loop; post() queues and wakes likewise. A wake sets the
// loop's event and posts a message to the loop's message-only window, so the work runs on the
// owner thread whichever loop it runs: runUntil (which waits for the event and the thread's
// messages with MsgWaitForMultipleObjectsEx) or a client's own GetMessage/DispatchMessage loop,
// whose dispatch of that message runs what is ready. Where no window can be made (no window
// station), the event alone serves runUntil and runPending.
#include <windows.h>
// mmsystem.h needs the types windows.h declares.
#include <mmsystem.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <ravelin/platform/detail/queued_event_loop.hpp>
#include <ravelin/platform/event_loop.hpp>
#include <system_error>
#include <unordered_map>
#include <vector>

namespace ravelin::platform {
namespace {

class Win32EventLoop;

// The loop of each running multimedia timer, by timer id: the callback reads it under the lock,
// so a timer stopped meanwhile queues nothing and a loop is never used after it is gone.
struct Targets {
  std::mutex mutex;
  std::unordered_map<EventLoop::TimerId, Win32EventLoop*> loops;
};
Targets& targets() {
  static Targets instance;
  return instance;
}

// The message that asks the loop's window to run what is ready.
constexpr UINT kRunReadyMessage = WM_APP + 0x101;

class Win32EventLoop final : public QueuedEventLoop {
 public:
  Win32EventLoop() : ready_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
    if (ready_ == nullptr) {
      throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                              "CreateEventW");
    }
    window_ = makeWindow(this);
  }

  ~Win32EventLoop() override {
    std::vector<TimerId> ids;
    {
      std::lock_guard guard(mutex_);
      for (const auto& [id, timer] : timers_)
        ids.push_back(id);
    }
    for (TimerId id : ids)
      stopTimer(id);
    if (window_ != nullptr) {
      // A message still queued for the window must not reach this loop any more.
      SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
      // Only the owner thread may destroy its window; another asks it to (and a thread that
      // has ended took its windows with it).
      if (GetWindowThreadProcessId(window_, nullptr) == GetCurrentThreadId()) {
        DestroyWindow(window_);
      } else {
        PostMessageW(window_, WM_CLOSE, 0, 0);
      }
    }
    CloseHandle(ready_);
  }

  Win32EventLoop(const Win32EventLoop&) = delete;
  Win32EventLoop& operator=(const Win32EventLoop&) = delete;

  TimerId startTimer(std::chrono::milliseconds interval, std::chrono::milliseconds resolution,
                     bool periodic, Work tick) override {
    if (interval <= std::chrono::milliseconds(0)) return 0;
    const TimerId id = newTimerId();
    {
      Targets& all = targets();
      std::lock_guard guard(all.mutex);
      all.loops[id] = this;
    }
    // Held until the timer is in the table: an early callback waits for it.
    std::lock_guard guard(mutex_);
    // The system timer runs at 1 ms for as long as a timer does.
    timeBeginPeriod(1);
    const TimePoint start = std::chrono::steady_clock::now();
    const MMRESULT system = timeSetEvent(
        static_cast<UINT>(interval.count()), static_cast<UINT>(resolution.count()), &timerProc,
        static_cast<DWORD_PTR>(id),
        (periodic ? TIME_PERIODIC : TIME_ONESHOT) | TIME_CALLBACK_FUNCTION | TIME_KILL_SYNCHRONOUS);
    if (system == 0) {
      timeEndPeriod(1);
      forget(id);
      return 0;
    }
    addTimer(id, std::move(tick), interval, periodic, start + interval, system);
    return id;
  }

  void runUntil(TimePoint deadline) override {
    runReadyUntil(deadline, [this](TimePoint until) {
      const auto wait = std::max(
          std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now()),
          std::chrono::milliseconds(0));
      MsgWaitForMultipleObjectsEx(1, &ready_, static_cast<DWORD>(wait.count()), QS_ALLINPUT,
                                  MWMO_INPUTAVAILABLE);
      // The thread's windows get their messages, as any message loop gives them.
      MSG message;
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
          PostQuitMessage(static_cast<int>(message.wParam));
          break;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
      }
    });
  }

  int readyDescriptor() const override { return -1; }

 protected:
  void wake() override {
    SetEvent(ready_);
    // One message at a time is enough: its dispatch runs everything ready by then.
    if (window_ != nullptr && !runMessageQueued_.exchange(true)) {
      PostMessageW(window_, kRunReadyMessage, 0, 0);
    }
  }

  // Expiries are queued as they happen.
  void collect() override {}

  void releaseTimer(TimerId id, const Timer& timer) override {
    // Returns once no callback of the timer runs or will.
    timeKillEvent(static_cast<UINT>(timer.system));
    timeEndPeriod(1);
    forget(id);
  }

 private:
  static void forget(TimerId id) {
    Targets& all = targets();
    std::lock_guard guard(all.mutex);
    all.loops.erase(id);
  }

  // On the timer service's thread: queues one expiry and wakes the loop.
  static void CALLBACK timerProc(UINT, UINT, DWORD_PTR user, DWORD_PTR, DWORD_PTR) {
    const auto id = static_cast<TimerId>(user);
    Targets& all = targets();
    std::lock_guard guard(all.mutex);
    auto found = all.loops.find(id);
    if (found == all.loops.end()) return;
    Win32EventLoop& loop = *found->second;
    {
      std::lock_guard timers(loop.mutex_);
      auto timer = loop.timers_.find(id);
      if (timer == loop.timers_.end()) return;
      std::vector<Expiry> batch;
      addExpiries(batch, id, timer->second, 1);
      loop.queueExpiries(batch);
    }
    loop.wake();
  }

  // The loop's message-only window on the calling (owner) thread, or null where none can be
  // made.
  static HWND makeWindow(Win32EventLoop* loop) {
    static const ATOM windowClass = registerWindowClass();
    if (windowClass == 0) return nullptr;
    HWND window = CreateWindowExW(0, MAKEINTATOM(windowClass), L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                                  nullptr, moduleOfThisCode(), nullptr);
    if (window != nullptr)
      SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(loop));
    return window;
  }

  // The module this code is linked into (a program or the library's DLL).
  static HINSTANCE moduleOfThisCode() {
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&windowProc), &module);
    return module;
  }

  static ATOM registerWindowClass() {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = &windowProc;
    description.hInstance = moduleOfThisCode();
    description.lpszClassName = L"RavelinEventLoop";
    return RegisterClassExW(&description);
  }

  // On the owner thread, from whichever message loop dispatches the message.
  static LRESULT CALLBACK windowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != kRunReadyMessage) return DefWindowProcW(window, message, wParam, lParam);
    auto* loop = reinterpret_cast<Win32EventLoop*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (loop != nullptr) {
      loop->runMessageQueued_ = false;
      loop->runPending();
    }
    return 0;
  }

  HANDLE ready_;
  HWND window_ = nullptr;
  // Whether a run message waits in the window's queue.
  std::atomic<bool> runMessageQueued_{false};
};

class Win32EventLoops final : public EventLoops {
 public:
  std::unique_ptr<EventLoop> make() override { return std::make_unique<Win32EventLoop>(); }
};

void WINAPI destroyLoop(void* threadLoop) {
  delete static_cast<ThreadLoop*>(threadLoop);
}

}  // namespace

// A fiber-local slot's callback runs when the thread ends, outside the C++ runtime's own
// thread-exit handling.
void destroyAtThreadExit(ThreadLoop* threadLoop) {
  static const DWORD slot = FlsAlloc(&destroyLoop);
  if (slot != FLS_OUT_OF_INDEXES) FlsSetValue(slot, threadLoop);
}

std::unique_ptr<EventLoops> EventLoops::makeNative() {
  return std::make_unique<Win32EventLoops>();
}

}  // namespace ravelin::platform
