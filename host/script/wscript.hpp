// The script host's WScript object: output, the script's name and arguments, Quit, Sleep and
// the connection of objects' events to the script's procedures.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <ravelin/frame/events.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/variant.hpp>
#include <span>
#include <string_view>
#include <vector>

namespace ravelin::script {

// WScript.Arguments: the script's command-line arguments; Item is the default member, so
// WScript.Arguments(0) reads the first one, and For Each walks them.
class WshArguments : public PublicClass<WshArguments> {
 public:
  static constexpr StringView kClassName = u"WshArguments";
  static ClassInfo describe();

  WshArguments() = default;
  explicit WshArguments(std::vector<String> arguments) : arguments_(std::move(arguments)) {}

  bool enumerate(std::vector<Variant>& items) const override;

  int32_t Count() const { return static_cast<int32_t>(arguments_.size()); }
  // The argument at a 0-based index; 9 (subscript out of range) outside 0 to Count - 1.
  const String& Item(int32_t index) const;

 private:
  std::vector<String> arguments_;
};

// WScript.StdOut and WScript.StdErr: text written as it is (Write) or as a line (WriteLine).
class WshTextStream : public PublicClass<WshTextStream> {
 public:
  static constexpr StringView kClassName = u"TextStream";
  static ClassInfo describe();

  using Writer = std::function<void(std::string_view text)>;

  WshTextStream() = default;
  explicit WshTextStream(Writer writer) : writer_(std::move(writer)) {}

  void Write(StringView text);
  void WriteLine(StringView text);
  void WriteBlankLines(int32_t count);

 private:
  Writer writer_;
};

// What the host tells WScript about the running script.
struct ScriptIdentity {
  // The path as given ("scripts/run.vbs"), or "-e" / "<stdin>" when there is no file.
  String path;
  // The absolute path of the file, or the same as `path` when there is no file.
  String fullPath;
  std::vector<String> arguments;
  String hostVersion;
};

class WScript : public PublicClass<WScript> {
 public:
  static constexpr StringView kClassName = u"WScript";
  static ClassInfo describe();

  // Writes text (UTF-8) to the script's standard output.
  using OutputWriter = std::function<void(std::string_view text)>;
  // Calls the script's procedure of that name; false when the script has none.
  using ProcedureCaller = std::function<bool(StringView name, std::span<Variant> arguments)>;

  // `errorOutput` receives what the script writes to WScript.StdErr.
  WScript(ScriptIdentity identity, OutputWriter output, ProcedureCaller callProcedure,
          std::shared_ptr<EventQueue> events = EventQueue::current(),
          OutputWriter errorOutput = nullptr);
  // A WScript with no script, whose output goes nowhere (the member table's builder needs one).
  WScript() : WScript({}, nullptr, nullptr) {}
  ~WScript() override;

  // Writes the arguments as one line (echo_text.hpp).
  void Echo(std::span<const Variant> arguments);
  // Ends the script with the exit code (raises ScriptQuit).
  [[noreturn]] void Quit(int32_t exitCode);
  ObjectRef Arguments() const { return arguments_; }
  // The file name without its folder.
  String ScriptName() const;
  String ScriptFullName() const { return identity_.fullPath; }
  String Version() const { return identity_.hostVersion; }
  ObjectRef StdOut() const { return stdOut_; }
  ObjectRef StdErr() const { return stdErr_; }
  // Waits that many milliseconds, delivering the thread's pending events meanwhile; 5 when
  // negative.
  void Sleep(int32_t milliseconds);
  // Sends the events of `source` to the script's Sub PREFIX + event name; an object that raises
  // no events gives 459.
  void ConnectObject(const ObjectRef& source, StringView prefix);
  // Stops the events of `source`; 5 when it is not connected.
  void DisconnectObject(const ObjectRef& source);

 private:
  struct Connection;

  ScriptIdentity identity_;
  OutputWriter output_;
  ProcedureCaller callProcedure_;
  std::shared_ptr<EventQueue> events_;
  std::shared_ptr<WshArguments> arguments_;
  std::shared_ptr<WshTextStream> stdOut_;
  std::shared_ptr<WshTextStream> stdErr_;
  std::vector<Connection> connections_;
};

}  // namespace ravelin::script
