// A random source for tests: hands out bytes set by hand, or fails.
#pragma once

#include <memory>
#include <ravelin/platform/fake/scoped_fake.hpp>
#include <ravelin/platform/random.hpp>
#include <vector>

namespace ravelin::platform {

// Repeats its byte pattern to fill every request; with no pattern set it reports failure.
class FakeRandomSource : public RandomSource {
 public:
  void setBytes(std::vector<uint8_t> bytes) { bytes_ = std::move(bytes); }
  bool fill(std::span<uint8_t> bytes) const override;

 private:
  std::vector<uint8_t> bytes_;
};

}  // namespace ravelin::platform
