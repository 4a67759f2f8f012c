// The event loop of Windows: the multimedia timer's callback, on the timer service's thread,
// only queues the expiry and signals the loop's event; post() queues and signals likewise. The
// loop waits for its event and the thread's messages (MsgWaitForMultipleObjectsEx), so the
// thread's windows keep getting theirs while it waits. No window is needed, which keeps the
// loop working where no window station is (a service; Wine without a display).
#include <windows.h>
// mmsystem.h needs the types windows.h declares.
#include <mmsystem.h>

#include <algorithm>
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

class Win32EventLoop final : public QueuedEventLoop {
 public:
  Win32EventLoop() : ready_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
    if (ready_ == nullptr) {
      throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                              "CreateEventW");
    }
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
  void wake() override { SetEvent(ready_); }

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
    SetEvent(loop.ready_);
  }

  HANDLE ready_;
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
