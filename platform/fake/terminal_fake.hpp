// A terminal for tests: standard input is a terminal or not, as set by hand.
#pragma once

#include <ravelin/platform/fake/scoped_fake.hpp>
#include <ravelin/platform/terminal.hpp>

namespace ravelin::platform {

// Takes the arguments from argv as given; standard input is no terminal until set otherwise,
// standard output never.
class FakeTerminal : public Terminal {
 public:
  void setInputIsTerminal(bool isTerminal) { inputIsTerminal_ = isTerminal; }

  std::vector<std::string> commandLineArguments(int argc, char** argv) const override {
    if (argc <= 1) return {};
    return std::vector<std::string>(argv + 1, argv + argc);
  }
  bool standardInputIsTerminal() const override { return inputIsTerminal_; }
  bool standardOutputIsTerminal() const override { return false; }

 private:
  bool inputIsTerminal_ = false;
};

}  // namespace ravelin::platform
