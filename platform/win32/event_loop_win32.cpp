// The event loop of Windows: a message-only window per loop, to which the multimedia timer's
// callback (on the timer service's thread) posts one message per expiry and post() a wake-up
// message. Dispatching those messages, from the loop's own wait or from a client's message
// loop, runs what is ready.
#include <windows.h>
#include <mmsystem.h>

#include <mutex>
#include <ravelin/platform/event_loop.hpp>
#include <ravelin/platform/detail/queued_event_loop.hpp>
#include <system_error>
#include <unordered_map>
#include <vector>

namespace ravelin::platform {
namespace {

// One expiry of the timer whose id is wParam.
constexpr UINT kTickMessage = 0x1401;
// Work was posted.
constexpr UINT kWakeMessage = WM_APP + 0x140;
constexpr wchar_t kWindowClass[] = L"RavelinEventLoop";

// Where each running multimedia timer posts, by timer id: the callback reads it under the lock,
// so a timer stopped meanwhile posts nothing and a window is never used after it is gone.
struct Targets {
  std::mutex mutex;
  std::unordered_map<EventLoop::TimerId, HWND> windows;
};
Targets& targets() {
  static Targets instance;
  return instance;
}

void CALLBACK timerProc(UINT, UINT, DWORD_PTR user, DWORD_PTR, DWORD_PTR) {
  const auto id = static_cast<EventLoop::TimerId>(user);
  Targets& all = targets();
  std::lock_guard guard(all.mutex);
  auto found = all.windows.find(id);
  if (found != all.windows.end())
    PostMessageW(found->second, kTickMessage, static_cast<WPARAM>(id), 0);
}

class Win32EventLoop final : public QueuedEventLoop {
 public:
  Win32EventLoop() {
    static const ATOM windowClass = [] {
      WNDCLASSEXW description{};
      description.cbSize = sizeof description;
      description.lpfnWndProc = &Win32EventLoop::windowProc;
      description.hInstance = GetModuleHandleW(nullptr);
      description.lpszClassName = kWindowClass;
      return RegisterClassExW(&description);
    }();
    if (windowClass == 0) throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "RegisterClassExW");
    window_ = CreateWindowExW(0, kWindowClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                              GetModuleHandleW(nullptr), nullptr);
    if (window_ == nullptr)
      throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "CreateWindowExW");
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
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
    SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    DestroyWindow(window_);
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
      all.windows[id] = window_;
    }
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
    Timer& timer = timers_[id];
    timer.tick = std::make_shared<const Work>(std::move(tick));
    timer.interval = interval;
    timer.periodic = periodic;
    timer.nextDue = start + interval;
    timer.system = system;
    return id;
  }

  void runUntil(TimePoint deadline) override {
    for (;;) {
      runPending();
      {
        std::lock_guard guard(mutex_);
        if (hasReady()) continue;
      }
      const TimePoint now = std::chrono::steady_clock::now();
      if (now >= deadline) break;
      const auto wait = std::chrono::ceil<std::chrono::milliseconds>(deadline - now);
      MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(wait.count()), QS_ALLINPUT,
                                  MWMO_INPUTAVAILABLE);
      // The thread's other windows get their messages too, as any message loop gives them.
      MSG message;
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
          PostQuitMessage(static_cast<int>(message.wParam));
          break;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
      }
    }
    runPending();
  }

  int readyDescriptor() const override { return -1; }

 protected:
  void wake() override { PostMessageW(window_, kWakeMessage, 0, 0); }

  // Takes the loop's own messages; their handling queues the ticks.
  void collect() override {
    collecting_ = true;
    MSG message;
    while (PeekMessageW(&message, window_, 0, 0, PM_REMOVE))
      DispatchMessageW(&message);
    collecting_ = false;
  }

  void releaseTimer(TimerId id, const Timer& timer) override {
    timeKillEvent(static_cast<UINT>(timer.system));
    timeEndPeriod(1);
    forget(id);
  }

 private:
  static void forget(TimerId id) {
    Targets& all = targets();
    std::lock_guard guard(all.mutex);
    all.windows.erase(id);
  }

  static LRESULT CALLBACK windowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* loop = reinterpret_cast<Win32EventLoop*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (loop == nullptr || (message != kTickMessage && message != kWakeMessage))
      return DefWindowProcW(window, message, wParam, lParam);
    if (message == kTickMessage) {
      std::lock_guard guard(loop->mutex_);
      auto found = loop->timers_.find(static_cast<TimerId>(wParam));
      if (found != loop->timers_.end()) {
        std::vector<Expiry> batch;
        addExpiries(batch, found->first, found->second, 1);
        loop->queueExpiries(batch);
      }
    }
    // From a client's message loop, the message runs what is ready; from the loop's own
    // collect(), runPending runs it next.
    if (!loop->collecting_) loop->runPending();
    return 0;
  }

  HWND window_ = nullptr;
  bool collecting_ = false;
};

class Win32EventLoops final : public EventLoops {
 public:
  std::unique_ptr<EventLoop> make() override { return std::make_unique<Win32EventLoop>(); }
};

}  // namespace

std::unique_ptr<EventLoops> EventLoops::makeNative() {
  return std::make_unique<Win32EventLoops>();
}

}  // namespace ravelin::platform
