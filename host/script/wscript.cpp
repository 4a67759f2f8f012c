#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/host/script/echo_text.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/wscript.hpp>

namespace ravelin::script {
namespace {

// Echo takes any number of arguments; the member table offers this many optional ones.
constexpr std::size_t kEchoParameters = 64;

// VB's "Object or class does not support the set of events".
constexpr int32_t kNoEventSupport = 459;

MemberInfo echoMember() {
  MemberInfo member;
  member.name = u"Echo";
  member.kind = MemberKind::Method;
  for (std::size_t i = 0; i < kEchoParameters; ++i) {
    ParameterInfo parameter;
    parameter.name = u"arg" + fromAscii(std::to_string(i + 1));
    parameter.optional = true;
    parameter.defaultValue = Variant::missing();
    member.parameters.push_back(std::move(parameter));
  }
  member.invoke = [](Object& self, std::span<Variant> arguments) {
    while (!arguments.empty() && arguments.back().isMissing())
      arguments = arguments.first(arguments.size() - 1);
    for (Variant& argument : arguments) {
      if (argument.isMissing()) argument = Variant();
    }
    static_cast<WScript&>(self).Echo(arguments);
    return Variant();
  };
  return member;
}

// Forwards an object's events to the script's procedures named prefix + event.
class ScriptEventSink : public EventSink {
 public:
  ScriptEventSink(String prefix, WScript::ProcedureCaller* call)
      : prefix_(std::move(prefix)), call_(call) {}
  // A procedure the script does not define is no error: the event is simply not handled.
  void onEvent(StringView eventName, std::span<Variant> arguments) override {
    String name = prefix_;
    name += eventName;
    if (*call_) (*call_)(name, arguments);
  }

 private:
  String prefix_;
  WScript::ProcedureCaller* call_;
};

}  // namespace

ClassInfo WshArguments::describe() {
  return ClassBuilder<WshArguments>(kClassName, false)
      .get(u"", &WshArguments::Item, {u"index"})
      .get(u"Item", &WshArguments::Item, {u"index"})
      .get(u"Count", &WshArguments::Count)
      .get(u"Length", &WshArguments::Count)
      .build();
}

bool WshArguments::enumerate(std::vector<Variant>& items) const {
  for (const String& argument : arguments_)
    items.emplace_back(argument);
  return true;
}

const String& WshArguments::Item(int32_t index) const {
  if (index < 0 || index >= Count()) raiseRuntimeError(vb_error::kSubscriptOutOfRange);
  return arguments_[static_cast<std::size_t>(index)];
}

ClassInfo WshTextStream::describe() {
  return ClassBuilder<WshTextStream>(kClassName, false)
      .method(u"Write", &WshTextStream::Write, {u"text"})
      .method(u"WriteLine", &WshTextStream::WriteLine, {optional(u"text", Variant(String()))})
      .method(u"WriteBlankLines", &WshTextStream::WriteBlankLines, {u"lines"})
      .build();
}

void WshTextStream::Write(StringView text) {
  if (writer_) writer_(toUtf8(text));
}

void WshTextStream::WriteLine(StringView text) {
  if (writer_) writer_(toUtf8(text) + '\n');
}

void WshTextStream::WriteBlankLines(int32_t count) {
  if (count < 0) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  if (writer_) writer_(std::string(static_cast<std::size_t>(count), '\n'));
}

// The sink lives as long as the connection; the source only holds it weakly.
struct WScript::Connection {
  ObjectRef source;
  std::shared_ptr<ScriptEventSink> sink;
  uint32_t cookie;
};

WScript::WScript(ScriptIdentity identity, OutputWriter output, ProcedureCaller callProcedure,
                 std::shared_ptr<EventQueue> events, OutputWriter errorOutput)
    : identity_(std::move(identity)),
      output_(std::move(output)),
      callProcedure_(std::move(callProcedure)),
      events_(std::move(events)),
      arguments_(makeObject<WshArguments>(identity_.arguments)),
      stdOut_(makeObject<WshTextStream>(output_)),
      stdErr_(makeObject<WshTextStream>(std::move(errorOutput))) {}

WScript::~WScript() {
  for (Connection& connection : connections_) {
    if (auto* source = dynamic_cast<EventSource*>(connection.source.get()))
      source->disconnectSink(connection.cookie);
  }
}

ClassInfo WScript::describe() {
  ClassInfo info =
      ClassBuilder<WScript>(kClassName, false)
          .method(u"Quit", [](WScript& self, int32_t code) { self.Quit(code); },
                  {optional(u"exitCode", Variant(int32_t{0}))})
          // WScript.Arguments(0) reads an argument directly, as the default member would.
          .get(u"Arguments",
               [](WScript& self, Variant index) -> Variant {
                 if (index.isMissing()) return Variant(self.Arguments());
                 return Variant(
                     static_cast<const WshArguments&>(*self.Arguments()).Item(CLng(index)));
               },
               {optional(u"index")})
          .get(u"ScriptName", &WScript::ScriptName)
          .get(u"ScriptFullName", &WScript::ScriptFullName)
          .get(u"Version", &WScript::Version)
          .get(u"StdOut", &WScript::StdOut)
          .get(u"StdErr", &WScript::StdErr)
          .method(u"Sleep", &WScript::Sleep, {u"time"})
          .method(u"ConnectObject",
                  [](WScript& self, std::shared_ptr<Object> source, String prefix) {
                    self.ConnectObject(source, prefix);
                  },
                  {u"object", u"prefix"})
          .method(
              u"DisconnectObject",
              [](WScript& self, std::shared_ptr<Object> source) { self.DisconnectObject(source); },
              {u"object"})
          .build();
  info.addMember(echoMember());
  return info;
}

void WScript::Echo(std::span<const Variant> arguments) {
  output_(echoLine(arguments));
}

void WScript::Quit(int32_t exitCode) {
  throw ScriptQuit{exitCode};
}

String WScript::ScriptName() const {
  const String& path = identity_.path;
  std::size_t slash = path.find_last_of(u"/\\");
  return slash == String::npos ? path : path.substr(slash + 1);
}

void WScript::Sleep(int32_t milliseconds) {
  if (milliseconds < 0) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  events_->waitAndRun(std::chrono::milliseconds(milliseconds));
}

void WScript::ConnectObject(const ObjectRef& source, StringView prefix) {
  if (!source) raiseRuntimeError(vb_error::kObjectRequired);
  auto* events = dynamic_cast<EventSource*>(source.get());
  if (events == nullptr) {
    raiseError(kNoEventSupport, String(kRuntimeErrorSource),
               u"Object or class does not support the set of events");
  }
  auto sink = std::make_shared<ScriptEventSink>(String(prefix), &callProcedure_);
  uint32_t cookie = events->connectSink(sink);
  connections_.push_back({source, std::move(sink), cookie});
}

void WScript::DisconnectObject(const ObjectRef& source) {
  auto found = std::find_if(connections_.begin(), connections_.end(),
                            [&](const Connection& c) { return c.source == source; });
  if (found == connections_.end()) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  // Every connection of that object goes.
  std::erase_if(connections_, [&](const Connection& connection) {
    if (connection.source != source) return false;
    dynamic_cast<EventSource&>(*connection.source).disconnectSink(connection.cookie);
    return true;
  });
}

}  // namespace ravelin::script
