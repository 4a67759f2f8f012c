// The event loop of Linux: an eventfd that posts write to, a timerfd for each timer, and one
// epoll descriptor over them all, which is what the loop polls and what a client adds to its
// own loop.
#include <errno.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <ravelin/platform/detail/queued_event_loop.hpp>
#include <ravelin/platform/event_loop.hpp>
#include <system_error>
#include <vector>

namespace ravelin::platform {
namespace {

// The epoll data of the wake-up descriptor; timers use their ids, which are never 0.
constexpr std::uint64_t kWakeData = 0;

timespec timespecOf(std::chrono::nanoseconds duration) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(duration);
  return timespec{static_cast<time_t>(seconds.count()),
                  static_cast<long>((duration - seconds).count())};
}

class PosixEventLoop final : public QueuedEventLoop {
 public:
  PosixEventLoop() {
    poller_ = epoll_create1(EPOLL_CLOEXEC);
    if (poller_ < 0) throw std::system_error(errno, std::generic_category(), "epoll_create1");
    wakeup_ = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (wakeup_ < 0) {
      const int error = errno;
      close(poller_);
      throw std::system_error(error, std::generic_category(), "eventfd");
    }
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.u64 = kWakeData;
    epoll_ctl(poller_, EPOLL_CTL_ADD, wakeup_, &event);
  }

  ~PosixEventLoop() override {
    for (const auto& [id, timer] : timers_)
      close(static_cast<int>(timer.system));
    close(wakeup_);
    close(poller_);
  }

  PosixEventLoop(const PosixEventLoop&) = delete;
  PosixEventLoop& operator=(const PosixEventLoop&) = delete;

  TimerId startTimer(std::chrono::milliseconds interval, std::chrono::milliseconds, bool periodic,
                     Work tick) override {
    if (interval <= std::chrono::milliseconds(0)) return 0;
    const int descriptor = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    if (descriptor < 0) return 0;
    const TimerId id = newTimerId();
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.u64 = id;
    itimerspec setting{};
    setting.it_value = timespecOf(interval);
    if (periodic) setting.it_interval = setting.it_value;
    std::lock_guard guard(mutex_);
    // Registered before it is armed, so that no expiry goes unseen.
    if (epoll_ctl(poller_, EPOLL_CTL_ADD, descriptor, &event) != 0) {
      close(descriptor);
      return 0;
    }
    const TimePoint start = std::chrono::steady_clock::now();
    if (timerfd_settime(descriptor, 0, &setting, nullptr) != 0) {
      close(descriptor);
      return 0;
    }
    addTimer(id, std::move(tick), interval, periodic, start + interval, descriptor);
    return id;
  }

  void runUntil(TimePoint deadline) override {
    runReadyUntil(deadline, [this](TimePoint until) {
      pollfd ready{poller_, POLLIN, 0};
      const timespec timeout = timespecOf(std::max(until - std::chrono::steady_clock::now(),
                                                   std::chrono::steady_clock::duration{}));
      ppoll(&ready, 1, &timeout, nullptr);
    });
  }

  int readyDescriptor() const override { return poller_; }

 protected:
  void wake() override {
    const std::uint64_t one = 1;
    // A full counter (never in practice) still reads as readable, which is all a wake needs.
    [[maybe_unused]] ssize_t written = write(wakeup_, &one, sizeof one);
  }

  void collect() override {
    std::array<epoll_event, 64> events;
    const int count = epoll_wait(poller_, events.data(), static_cast<int>(events.size()), 0);
    if (count <= 0) return;
    std::vector<Expiry> batch;
    std::lock_guard guard(mutex_);
    for (int i = 0; i < count; ++i) {
      std::uint64_t value = 0;
      if (events[i].data.u64 == kWakeData) {
        [[maybe_unused]] ssize_t got = read(wakeup_, &value, sizeof value);
        continue;
      }
      auto found = timers_.find(events[i].data.u64);
      if (found == timers_.end()) continue;  // stopped meanwhile
      // Read under the lock: a stop on another thread closes the descriptor.
      if (read(static_cast<int>(found->second.system), &value, sizeof value) != sizeof value)
        continue;
      addExpiries(batch, found->first, found->second, value);
    }
    queueExpiries(batch);
  }

  void releaseTimer(TimerId, const Timer& timer) override {
    // Closing the descriptor also takes it out of the epoll set.
    close(static_cast<int>(timer.system));
  }

 private:
  int poller_ = -1;
  int wakeup_ = -1;
};

class PosixEventLoops final : public EventLoops {
 public:
  std::unique_ptr<EventLoop> make() override { return std::make_unique<PosixEventLoop>(); }
};

}  // namespace

void destroyAtThreadExit(ThreadLoop* threadLoop) {
  struct Owner {
    ThreadLoop* threadLoop = nullptr;
    ~Owner() { delete threadLoop; }
  };
  thread_local Owner owner;
  owner.threadLoop = threadLoop;
}

std::unique_ptr<EventLoops> EventLoops::makeNative() {
  return std::make_unique<PosixEventLoops>();
}

}  // namespace ravelin::platform
