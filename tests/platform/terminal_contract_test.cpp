// The same argument cases against the fake terminal and the native one, then the native one
// against real standard inputs: a pipe, and a terminal where the test can open one.
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

struct Implementation {
  const char* name;
  std::function<std::shared_ptr<Terminal>()> make;
};

class TerminalContractTest : public testing::TestWithParam<Implementation> {};

TEST_P(TerminalContractTest, ArgumentsAfterTheProgramNameEachKeptWhole) {
#if defined(_WIN32)
  if (std::string(GetParam().name) == "native")
    GTEST_SKIP() << "Windows reads the process's own command line, not argv";
#endif
  struct Row {
    std::vector<std::string> argv;
    std::vector<std::string> expected;
  };
  const Row rows[] = {
      {{"ravelin", "run.vbs", "two words", "\xC3\xA9t\xC3\xA9", ""},
       {"run.vbs", "two words", "\xC3\xA9t\xC3\xA9", ""}},
      {{"ravelin"}, {}},
      {{}, {}},
  };
  const std::shared_ptr<Terminal> terminal = GetParam().make();
  for (const Row& row : rows) {
    std::vector<std::string> storage = row.argv;
    std::vector<char*> argv;
    for (std::string& argument : storage)
      argv.push_back(argument.data());
    argv.push_back(nullptr);
    EXPECT_EQ(terminal->commandLineArguments(static_cast<int>(storage.size()), argv.data()),
              row.expected);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Implementations, TerminalContractTest,
    testing::Values(
        Implementation{"fake",
                       [] { return std::shared_ptr<Terminal>(std::make_shared<FakeTerminal>()); }},
        Implementation{"native", [] { return std::shared_ptr<Terminal>(Terminal::makeNative()); }}),
    [](const testing::TestParamInfo<Implementation>& info) {
      return std::string(info.param.name);
    });

#if defined(_WIN32)

using Handle = HANDLE;
const Handle kNoHandle = INVALID_HANDLE_VALUE;

void closeHandle(Handle handle) {
  CloseHandle(handle);
}

// Puts a handle in place of standard input.
Handle replaceStandardInput(Handle handle) {
  const Handle previous = GetStdHandle(STD_INPUT_HANDLE);
  SetStdHandle(STD_INPUT_HANDLE, handle);
  return previous;
}

void restoreStandardInput(Handle previous) {
  SetStdHandle(STD_INPUT_HANDLE, previous);
}

// An empty pipe's reading end.
Handle openPipe(Handle&) {
  Handle reading = nullptr;
  Handle writing = nullptr;
  if (!CreatePipe(&reading, &writing, nullptr, 0)) return kNoHandle;
  CloseHandle(writing);
  return reading;
}

// The console's input, when the process has a console.
Handle openTerminal(Handle&) {
  return CreateFileW(L"CONIN$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                     nullptr, OPEN_EXISTING, 0, nullptr);
}

#else

using Handle = int;
const Handle kNoHandle = -1;

void closeHandle(Handle handle) {
  close(handle);
}

Handle replaceStandardInput(Handle handle) {
  const Handle previous = dup(STDIN_FILENO);
  dup2(handle, STDIN_FILENO);
  return previous;
}

void restoreStandardInput(Handle previous) {
  if (previous == kNoHandle) {
    close(STDIN_FILENO);
    return;
  }
  dup2(previous, STDIN_FILENO);
  close(previous);
}

// An empty pipe's reading end.
Handle openPipe(Handle&) {
  int ends[2];
  if (pipe(ends) != 0) return kNoHandle;
  close(ends[1]);
  return ends[0];
}

// The far side of a new pseudo-terminal; the near side, which has to stay open for the far one
// to remain a terminal, goes to `keep`.
Handle openTerminal(Handle& keep) {
  keep = posix_openpt(O_RDWR | O_NOCTTY);
  if (keep < 0) return kNoHandle;
  const char* name = grantpt(keep) == 0 && unlockpt(keep) == 0 ? ptsname(keep) : nullptr;
  return name == nullptr ? kNoHandle : open(name, O_RDWR | O_NOCTTY);
}

#endif

TEST(NativeTerminalTest, StandardInputIsATerminalOnlyWhenItIsOne) {
  struct Row {
    const char* what;
    Handle (*open)(Handle& keep);
    bool expected;
  };
  const Row rows[] = {{"pipe", openPipe, false}, {"terminal", openTerminal, true}};
  const std::unique_ptr<Terminal> terminal = Terminal::makeNative();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    Handle keep = kNoHandle;
    const Handle input = row.open(keep);
    if (input == kNoHandle) {
      if (keep != kNoHandle) closeHandle(keep);
      if (row.expected) continue;  // no terminal to be had here
      FAIL() << "cannot open a " << row.what;
    }
    const Handle previous = replaceStandardInput(input);
    const bool isTerminal = terminal->standardInputIsTerminal();
    restoreStandardInput(previous);
    closeHandle(input);
    if (keep != kNoHandle) closeHandle(keep);
    EXPECT_EQ(isTerminal, row.expected);
  }
}

}  // namespace
}  // namespace ravelin::platform
