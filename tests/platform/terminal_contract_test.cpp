// The argument cases against the fake terminal and the native one, then the native one with a
// pipe and (on POSIX) a pseudo-terminal as standard input.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <ravelin/platform/fake/terminal_fake.hpp>
#include <ravelin/platform/terminal.hpp>
#include <utility>

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

TEST(NativeTerminalTest, PipesAsStandardInputAndOutputAreNoTerminals) {
  HANDLE reading = nullptr;
  HANDLE writing = nullptr;
  ASSERT_TRUE(CreatePipe(&reading, &writing, nullptr, 0));
  const HANDLE previousInput = GetStdHandle(STD_INPUT_HANDLE);
  const HANDLE previousOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  SetStdHandle(STD_INPUT_HANDLE, reading);
  SetStdHandle(STD_OUTPUT_HANDLE, writing);
  const auto native = Terminal::makeNative();
  const bool inputIsTerminal = native->standardInputIsTerminal();
  const bool outputIsTerminal = native->standardOutputIsTerminal();
  SetStdHandle(STD_INPUT_HANDLE, previousInput);
  SetStdHandle(STD_OUTPUT_HANDLE, previousOutput);
  CloseHandle(reading);
  CloseHandle(writing);
  EXPECT_FALSE(inputIsTerminal);
  EXPECT_FALSE(outputIsTerminal);
}

#else

// Whether the native terminal calls standard input and standard output terminals while each of
// them is `stream`.
std::pair<bool, bool> seenAsTerminal(int stream) {
  std::pair<bool, bool> seen;
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO}) {
    std::fflush(stdout);
    const int previous = dup(standard);
    dup2(stream, standard);
    const auto native = Terminal::makeNative();
    (standard == STDIN_FILENO ? seen.first : seen.second) =
        standard == STDIN_FILENO ? native->standardInputIsTerminal()
                                 : native->standardOutputIsTerminal();
    dup2(previous, standard);
    close(previous);
  }
  return seen;
}

TEST(NativeTerminalTest, StandardInputAndOutputAreTerminalsOnlyWhenTheyAreOnes) {
  int pipeEnds[2];
  ASSERT_EQ(pipe(pipeEnds), 0);
  EXPECT_EQ(seenAsTerminal(pipeEnds[0]), std::pair(false, false));
  close(pipeEnds[0]);
  close(pipeEnds[1]);

  // The far side of a pseudo-terminal stays a terminal only while the near side is open.
  const int near = posix_openpt(O_RDWR | O_NOCTTY);
  const char* name =
      near >= 0 && grantpt(near) == 0 && unlockpt(near) == 0 ? ptsname(near) : nullptr;
  const int far = name == nullptr ? -1 : open(name, O_RDWR | O_NOCTTY);
  if (far >= 0) {
    EXPECT_EQ(seenAsTerminal(far), std::pair(true, true));
    close(far);
  }
  if (near >= 0) close(near);
  if (far < 0) GTEST_SKIP() << "no pseudo-terminal to be had";
}

#endif

}  // namespace
}  // namespace ravelin::platform
