// The slot every platform area is reached through, tried on an area of the test's own.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <ravelin/platform/fake/scoped_fake.hpp>
#include <ravelin/platform/slot.hpp>
#include <string>
#include <thread>
#include <vector>

namespace ravelin::platform {
namespace {

// An area whose native implementation counts how often it is made, and takes a moment to make
// (so that threads reading the slot at once would all see it missing, were it not locked). Each
// Tag is an area of its own, with a slot that nobody has read yet.
template <int Tag>
class Probe {
 public:
  virtual ~Probe() = default;
  virtual std::string name() const { return "native"; }

  static std::unique_ptr<Probe> makeNative() {
    ++made;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    return std::make_unique<Probe>();
  }
  static inline std::atomic<int> made = 0;
};

template <int Tag>
class FakeProbe : public Probe<Tag> {
 public:
  explicit FakeProbe(std::string name = "fake") : name_(std::move(name)) {}
  std::string name() const override { return name_; }

 private:
  std::string name_;
};

TEST(SlotTest, InstalledImplementationsReplaceTheNativeOneUntilPutBack) {
  constexpr Slot<Probe<0>> probe{};
  EXPECT_EQ(Probe<0>::made.load(), 0);
  const auto native = probe();
  EXPECT_EQ(probe(), native);
  {
    ScopedFake<FakeProbe<0>> outer("outer");
    EXPECT_EQ(probe().get(), &outer.fake());
    {
      ScopedFake<FakeProbe<0>> inner("inner");
      EXPECT_EQ(probe()->name(), "inner");
    }
    EXPECT_EQ(probe()->name(), "outer");
  }
  EXPECT_EQ(probe(), native);
  EXPECT_EQ(Probe<0>::made.load(), 1);

  // Null puts a native one back, made anew.
  auto fake = std::make_shared<FakeProbe<0>>();
  EXPECT_EQ(probe.install(fake), native);
  EXPECT_EQ(probe.install(nullptr), fake);
  EXPECT_EQ(probe()->name(), "native");
  EXPECT_EQ(Probe<0>::made.load(), 2);
}

// Threads that read an area for the first time at once all get the one native implementation.
TEST(SlotTest, FirstReadsFromManyThreadsMakeOneNative) {
  constexpr Slot<Probe<1>> probe{};
  constexpr int kThreads = 8;
  std::atomic<int> ready = 0;
  std::vector<std::shared_ptr<Probe<1>>> seen(kThreads);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      ++ready;
      while (ready < kThreads)
        std::this_thread::yield();
      seen[static_cast<std::size_t>(i)] = probe();
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(Probe<1>::made.load(), 1);
  for (const auto& each : seen)
    EXPECT_EQ(each, seen[0]);
}

}  // namespace
}  // namespace ravelin::platform
