// ravelin: the script host. Runs a script file, code given with -e, a script read from standard
// input, or an interactive prompt, with the library's classes and the WScript object.
#include <cstdio>
#include <filesystem>
#include <new>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/host/class_listing.hpp>
#include <ravelin/host/command_line.hpp>
#include <ravelin/host/error_report.hpp>
#include <ravelin/host/prompt.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/syntax_error.hpp>
#include <ravelin/host/script/wscript.hpp>
#include <ravelin/host/script_source.hpp>
#include <ravelin/platform/terminal.hpp>
#include <string>
#include <utility>
#include <vector>

#ifndef RAVELIN_VERSION
#define RAVELIN_VERSION "0.0.0"
#endif

namespace ravelin::host {
namespace {

void writeOut(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}
void flushOut() {
  std::fflush(stdout);
}

// Writes an error line after whatever the script wrote, so the two appear in order.
void writeErr(const std::string& text) {
  flushOut();
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

// The script's bytes from a file or standard input, or an error line and false.
bool readScript(const std::string& label, ScriptBytes read, std::string& bytes) {
  switch (read.status) {
    case ScriptBytes::Status::Read:
      bytes = std::move(read.bytes);
      return true;
    case ScriptBytes::Status::TooLarge:
      writeErr("ravelin: script " + label + " is larger than " +
               std::to_string(kMaxScriptBytes >> 20) + " MiB\n");
      return false;
    case ScriptBytes::Status::Unreadable:
      break;
  }
  writeErr("ravelin: cannot read script file " + label + "\n");
  return false;
}

String fullPathOf(const std::string& path) {
  std::error_code failed;
  std::filesystem::path absolute = std::filesystem::absolute(path, failed);
  return fromUtf8(failed ? path : absolute.lexically_normal().string());
}

// Runs a whole script and turns its end into the exit code.
int runScript(script::Interpreter& interpreter, std::string_view fileLabel, const String& source) {
  try {
    interpreter.run(source);
    return 0;
  } catch (const script::ScriptQuit& quit) {
    return quit.exitCode;
  } catch (const script::SyntaxError& error) {
    writeErr(syntaxErrorText(fileLabel, error));
    return kExitSyntaxOrUsageError;
  } catch (const script::ScriptError& error) {
    writeErr(runtimeErrorText(fileLabel, error));
    return kExitRuntimeError;
  } catch (const AutomationError& error) {
    // An error raised outside any statement (an event delivered after the end, say).
    writeErr(runtimeErrorText(fileLabel, script::ScriptError(error, 0, 0)));
    return kExitRuntimeError;
  } catch (const std::bad_alloc&) {
    writeErr(std::string(fileLabel) + ": error 7: Out of memory\n");
    return kExitRuntimeError;
  }
}

int listClasses(const std::string& name) {
  const ClassRegistry& registry = libraryRegistry();
  if (name.empty()) {
    writeOut(listLibrary(registry));
    return 0;
  }
  std::string text = listClass(registry, fromUtf8(name));
  if (text.empty()) {
    writeErr("ravelin: no class or enumeration named " + name + "\n");
    return kExitSyntaxOrUsageError;
  }
  writeOut(text);
  return 0;
}

int hostMain(int argc, char** argv) {
  const auto terminal = platform::terminal();
  const std::vector<std::string> given = terminal->commandLineArguments(argc, argv);
  std::vector<std::string_view> arguments(given.begin(), given.end());
  bool inputIsTerminal = arguments.empty() && terminal->standardInputIsTerminal();
  CommandLine line = parseCommandLine(arguments, inputIsTerminal);

  switch (line.action) {
    case HostAction::UsageError:
      writeErr("ravelin: " + line.error + "\n" + std::string(usageText()));
      return kExitSyntaxOrUsageError;
    case HostAction::ShowHelp:
      writeOut(usageText());
      return 0;
    case HostAction::ShowVersion:
      writeOut("ravelin " RAVELIN_VERSION "\n");
      return 0;
    case HostAction::ListClasses:
      return listClasses(line.target);
    default:
      break;
  }

  script::ScriptIdentity identity;
  String source;
  std::string label;
  switch (line.action) {
    case HostAction::RunFile:
      if (line.target == "-") {
        label = "<stdin>";
        std::string bytes;
        if (!readScript(label, readScriptBytes(stdin), bytes)) return kExitSyntaxOrUsageError;
        source = decodeScriptSource(bytes);
        identity.fullPath = identity.path = fromUtf8(label);
      } else {
        label = line.target;
        std::string bytes;
        if (!readScript(label, readScriptBytes(line.target), bytes)) {
          return kExitSyntaxOrUsageError;
        }
        source = decodeScriptSource(bytes);
        identity.path = fromUtf8(line.target);
        identity.fullPath = fullPathOf(line.target);
      }
      break;
    case HostAction::RunCode:
      label = "-e";
      source = fromUtf8(line.target);
      identity.fullPath = identity.path = fromUtf8(label);
      break;
    case HostAction::RunInput: {
      label = "<stdin>";
      std::string bytes;
      if (!readScript(label, readScriptBytes(stdin), bytes)) return kExitSyntaxOrUsageError;
      source = decodeScriptSource(bytes);
      identity.fullPath = identity.path = fromUtf8(label);
      break;
    }
    default:  // the prompt
      label = "<prompt>";
      identity.fullPath = identity.path = fromUtf8(label);
      break;
  }
  for (const std::string& argument : line.scriptArguments)
    identity.arguments.push_back(fromUtf8(argument));
  identity.hostVersion = fromAscii(RAVELIN_VERSION);

  script::Interpreter interpreter;
  auto wscript = makeObject<script::WScript>(
      std::move(identity), writeOut,
      [&interpreter](StringView name, std::span<Variant> values) {
        return interpreter.callProcedure(name, values);
      },
      EventQueue::current(), [](std::string_view text) { writeErr(std::string(text)); });
  interpreter.addGlobalObject(u"WScript", wscript);

  if (line.action == HostAction::Prompt)
    return runPrompt(interpreter, stdin, stdout, stderr, flushOut);
  return runScript(interpreter, label, source);
}

}  // namespace
}  // namespace ravelin::host

int main(int argc, char** argv) {
  // Script output is written in large blocks; errors flush it first.
  static char outputBuffer[1 << 16];
  std::setvbuf(stdout, outputBuffer, _IOFBF, sizeof outputBuffer);
  int code = ravelin::host::hostMain(argc, argv);
  std::fflush(stdout);
  return code;
}
