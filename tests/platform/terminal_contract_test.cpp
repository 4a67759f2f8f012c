// The argument cases against the fake terminal and the native one, then the native one with a
// pipe and (on POSIX) a pseudo-terminal as standard input.
#include <gtest/gtest.h>

#include <functional>
#include <ravelin/platform/fake/terminal_fake.hpp>
#include <ravelin/platform/terminal.hpp>

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>
#endif

namespace ravelin::platform {
namespace {

class TerminalContractTest
    : public testing::TestWithParam<std::pair<const char*, std::shared_ptr<Terminal> (*)()>> {};

TEST_P(TerminalContractTest, ArgumentsAfterTheProgramNameEachKeptWhole) {
#if defined(_WIN32)
  if (std::string(GetParam().first) == "native")
    GTEST_SKIP() << "Windows reads the process's own command line, not argv";
#endif
  const std::pair<std::vector<std::string>, std::vector<std::string>> rows[] = {
      {{"ravelin", "run.vbs", "two words", "\xC3\xA9t\xC3\xA9", ""},
       {"run.vbs", "two words", "\xC3\xA9t\xC3\xA9", ""}},
      {{"ravelin"}, {}},
      {{}, {}},
  };
  const std::shared_ptr<Terminal> terminal = GetParam().second();
  for (auto [argv, expected] : rows) {
    std::vector<char*> pointers;
    for (std::string& argument : argv)
      pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    EXPECT_EQ(terminal->commandLineArguments(static_cast<int>(argv.size()), pointers.data()),
              expected);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Implementations, TerminalContractTest,
    testing::Values(std::pair{"fake", +[] { return std::shared_ptr<Terminal>(new FakeTerminal); }},
                    std::pair{"native", +[] { return std::shared_ptr(Terminal::makeNative()); }}),
    [](const auto& info) { return std::string(info.param.first); });

#if defined(_WIN32)

TEST(NativeTerminalTest, PipeAsStandardInputIsNoTerminal) {
  HANDLE reading = nullptr;
  HANDLE writing = nullptr;
  ASSERT_TRUE(CreatePipe(&reading, &writing, nullptr, 0));
  const HANDLE previous = GetStdHandle(STD_INPUT_HANDLE);
  SetStdHandle(STD_INPUT_HANDLE, reading);
  const bool isTerminal = Terminal::makeNative()->standardInputIsTerminal();
  SetStdHandle(STD_INPUT_HANDLE, previous);
  CloseHandle(reading);
  CloseHandle(writing);
  EXPECT_FALSE(isTerminal);
}

#else

// Whether the native terminal calls standard input a terminal while it reads from `input`.
bool seenAsTerminal(int input) {
  const int previous = dup(STDIN_FILENO);
  dup2(input, STDIN_FILENO);
  const bool isTerminal = Terminal::makeNative()->standardInputIsTerminal();
  dup2(previous, STDIN_FILENO);
  close(previous);
  return isTerminal;
}

TEST(NativeTerminalTest, StandardInputIsATerminalOnlyWhenItIsOne) {
  int pipeEnds[2];
  ASSERT_EQ(pipe(pipeEnds), 0);
  EXPECT_FALSE(seenAsTerminal(pipeEnds[0]));
  close(pipeEnds[0]);
  close(pipeEnds[1]);

  // The far side of a pseudo-terminal stays a terminal only while the near side is open.
  const int near = posix_openpt(O_RDWR | O_NOCTTY);
  const char* name =
      near >= 0 && grantpt(near) == 0 && unlockpt(near) == 0 ? ptsname(near) : nullptr;
  const int far = name == nullptr ? -1 : open(name, O_RDWR | O_NOCTTY);
  if (far >= 0) {
    EXPECT_TRUE(seenAsTerminal(far));
    close(far);
  }
  if (near >= 0) close(near);
  if (far < 0) GTEST_SKIP() << "no pseudo-terminal to be had";
}

#endif

}  // namespace
}  // namespace ravelin::platform
