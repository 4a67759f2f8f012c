// The terminal of Windows: arguments from the wide command line, the console mode for input.
#include <windows.h>
// shellapi.h needs windows.h first.
#include <shellapi.h>

#include <ravelin/base/text.hpp>
#include <ravelin/platform/terminal.hpp>

namespace ravelin::platform {
namespace {

class Win32Terminal final : public Terminal {
 public:
  std::vector<std::string> commandLineArguments(int argc, char** argv) const override {
    int count = 0;
    LPWSTR* wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr) {
      if (argc <= 1) return {};
      return std::vector<std::string>(argv + 1, argv + argc);
    }
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) {
      const auto* text = reinterpret_cast<const char16_t*>(wide[i]);
      arguments.push_back(toUtf8(StringView(text)));
    }
    LocalFree(wide);
    return arguments;
  }

  // A console handle answers GetConsoleMode; a pipe or a file does not.
  bool standardInputIsTerminal() const override {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
  }
  bool standardOutputIsTerminal() const override {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0;
  }
};

}  // namespace

std::unique_ptr<Terminal> Terminal::makeNative() {
  return std::make_unique<Win32Terminal>();
}

}  // namespace ravelin::platform
