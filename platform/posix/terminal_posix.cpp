// The terminal of POSIX systems: arguments as main receives them, isatty for standard input.
#include <unistd.h>

#include <ravelin/platform/terminal.hpp>

namespace ravelin::platform {
namespace {

class PosixTerminal final : public Terminal {
 public:
  std::vector<std::string> commandLineArguments(int argc, char** argv) const override {
    if (argc <= 1) return {};
    return std::vector<std::string>(argv + 1, argv + argc);
  }

  bool standardInputIsTerminal() const override { return isatty(STDIN_FILENO) == 1; }
  bool standardOutputIsTerminal() const override { return isatty(STDOUT_FILENO) == 1; }
};

}  // namespace

std::unique_ptr<Terminal> Terminal::makeNative() {
  return std::make_unique<PosixTerminal>();
}

}  // namespace ravelin::platform
