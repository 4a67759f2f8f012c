#include <gtest/gtest.h>

#include <ravelin/frame/cls_error.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/wscript.hpp>
#include <ravelin/platform/fake/clock_fake.hpp>
#include <ravelin/platform/fake/event_loop_fake.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <string>
#include <thread>
#include <vector>

namespace ravelin::script {
namespace {

using namespace std::chrono_literals;

// A test object with an event: "Tick" with one by-reference argument.
class Ticker : public PublicClass<Ticker>, public EventSource {
 public:
  static constexpr StringView kClassName = u"Ticker";
  void tick(int32_t value) {
    Variant arguments[] = {Variant(value)};
    raise(arguments);
  }
  void raise(std::span<Variant> arguments) { raiseEvent(u"Tick", arguments); }
};

struct Harness {
  explicit Harness(ScriptIdentity identity = {})
      : queue(std::make_shared<EventQueue>()),
        wscript(std::make_shared<WScript>(
            std::move(identity), [this](std::string_view text) { output += text; },
            [this](StringView name, std::span<Variant> arguments) {
              if (!equalsIgnoreCase(name, u"T_Tick")) return false;
              calls.push_back(toUtf8(name) + "(" + std::to_string(arguments[0].asLong()) + ")");
              return true;
            },
            queue)) {}

  // Calls a member by name as a script would.
  Variant call(const ObjectRef& object, StringView name, MemberKind kind,
               std::vector<Variant> values = {}) {
    std::vector<CallArgument> arguments(values.begin(), values.end());
    const MemberInfo* member = object->classInfo().find(name, kind);
    if (member == nullptr) raiseRuntimeError(vb_error::kMemberNotSupported);
    return callMember(*object, *member, arguments);
  }
  Variant call(StringView name, std::vector<Variant> values = {}) {
    return call(wscript, name, MemberKind::Method, std::move(values));
  }
  Variant get(const ObjectRef& object, StringView name, std::vector<Variant> values = {}) {
    return call(object, name, MemberKind::PropertyGet, std::move(values));
  }

  std::shared_ptr<EventQueue> queue;
  std::string output;
  std::vector<std::string> calls;
  std::shared_ptr<WScript> wscript;
};

// tests/scripts/echo_values pins what Echo writes; here, its limit of 64 arguments.
TEST(WScript, EchoTakesUpTo64Arguments) {
  Harness host;
  host.call(u"echo", std::vector<Variant>(64, Variant(true)));
  EXPECT_EQ(host.output.size(), 64u * 3u);
  std::vector<Variant> tooMany(65, Variant(int32_t{0}));
  EXPECT_EQ(errorNumberOf([&] { host.call(u"Echo", tooMany); }), vb_error::kWrongArgumentCount);
}

TEST(WScript, ArgumentsAndScriptNames) {
  Harness host(ScriptIdentity{u"tests/scripts/run.vbs",
                              u"/work/tests/scripts/run.vbs",
                              {u"first", u"second word"},
                              u"1.2.3"});
  // Count, Item, For Each and the out-of-range index are pinned by tests/scripts/arguments;
  // an index given as text is read as a number.
  ObjectRef arguments = host.get(host.wscript, u"Arguments").asObject();
  EXPECT_EQ(host.get(arguments, u"", {Variant(String(u"1"))}).asString(), u"second word");
  EXPECT_EQ(host.get(host.wscript, u"ScriptFullName").asString(), u"/work/tests/scripts/run.vbs");
  EXPECT_EQ(host.get(host.wscript, u"Version").asString(), u"1.2.3");

  struct Row {
    String path;
    String name;
  };
  const Row rows[] = {
      {u"C:\\suite\\run.vbs", u"run.vbs"}, {u"-e", u"-e"}, {u"a/b\\c.vbs", u"c.vbs"}};
  for (const Row& row : rows) {
    WScript wscript(ScriptIdentity{row.path, row.path, {}, u""}, nullptr, nullptr);
    EXPECT_EQ(wscript.ScriptName(), row.name);
  }
}

TEST(WScript, QuitEndsTheScriptWithItsCode) {
  Harness host;
  for (auto [arguments, code] : {std::pair{std::vector<Variant>{}, 0},
                                 std::pair{std::vector<Variant>{Variant(String(u"7"))}, 7}}) {
    try {
      host.call(u"Quit", arguments);
      FAIL() << "Quit returned";
    } catch (const ScriptQuit& quit) {
      EXPECT_EQ(quit.exitCode, code);
    }
  }
}

TEST(WScript, SleepTimedEventsAndBadArguments) {
  platform::ScopedFake<platform::SimulatedClock> simulated;
  platform::ScopedFake<platform::ClockEventLoops> loops;
  platform::SimulatedClock& clock = simulated.fake();
  Harness host;
  auto ticker = std::make_shared<Ticker>();
  host.call(u"ConnectObject", {Variant(ObjectRef(ticker)), Variant(String(u"t_"))});
  const auto start = clock.now();
  clock.schedule(start + 40ms, [&] { host.queue->post([&] { ticker->tick(40); }); });
  clock.schedule(start + 90ms, [&] { host.queue->post([&] { ticker->tick(90); }); });
  host.call(u"Sleep", {Variant(int32_t{50})});
  EXPECT_EQ(host.calls, (std::vector<std::string>{"t_Tick(40)"}));
  EXPECT_EQ(clock.now() - start, 50ms);

  // After DisconnectObject the ticks reach no one; a second disconnect is an error.
  host.call(u"DisconnectObject", {Variant(ObjectRef(ticker))});
  host.call(u"Sleep", {Variant(int32_t{50})});
  EXPECT_EQ(host.calls.size(), 1u);
  EXPECT_EQ(ticker->sinkCount(), 0u);
  EXPECT_EQ(errorNumberOf([&] { host.call(u"DisconnectObject", {Variant(ObjectRef(ticker))}); }),
            vb_error::kInvalidProcedureCall);

  EXPECT_EQ(errorNumberOf([&] { host.call(u"Sleep", {Variant(int32_t{-1})}); }),
            vb_error::kInvalidProcedureCall);
  ObjectRef plain = std::make_shared<clsError>();
  EXPECT_EQ(errorNumberOf([&] {
              host.call(u"ConnectObject", {Variant(plain), Variant(String(u"x_"))});
            }),
            459);
  EXPECT_EQ(errorNumberOf([&] {
              host.call(u"ConnectObject", {Variant::nothing(), Variant(String(u"x_"))});
            }),
            vb_error::kObjectRequired);
}

// The whole path: a script connects an object's events, sleeps while another thread posts
// ticks, and its Sub receives them (by reference) through the interpreter.
TEST(WScript, ScriptProceduresReceiveEventsDuringSleep) {
  platform::ScopedFake<platform::SimulatedClock> simulated;
  platform::ScopedFake<platform::ClockEventLoops> loops;
  platform::SimulatedClock& clock = simulated.fake();
  auto queue = std::make_shared<EventQueue>();
  std::string output;
  Interpreter interpreter;
  auto wscript = std::make_shared<WScript>(
      ScriptIdentity{u"-e", u"-e", {}, u""}, [&](std::string_view text) { output += text; },
      [&](StringView name, std::span<Variant> arguments) {
        return interpreter.callProcedure(name, arguments);
      },
      queue);
  interpreter.addGlobalObject(u"WScript", wscript);
  auto ticker = std::make_shared<Ticker>();
  interpreter.addGlobalObject(u"ticker", ticker);

  std::vector<int32_t> returned;
  clock.expectPosts(2);
  std::thread timer([&] {
    for (int32_t i = 1; i <= 2; ++i) {
      queue->post([&, i] {
        Variant arguments[] = {Variant(i)};
        ticker->raise(arguments);
        returned.push_back(CLng(arguments[0]));
        clock.expectPosts(-1);
      });
    }
  });
  interpreter.run(
      u"Sub T_Tick(n)\n"
      u"  WScript.Echo \"tick\", n\n"
      u"  n = n * 10\n"
      u"End Sub\n"
      u"WScript.ConnectObject ticker, \"T_\"\n"
      u"WScript.Sleep 1000\n"
      u"WScript.DisconnectObject ticker\n"
      u"WScript.Echo \"done\"\n");
  timer.join();
  EXPECT_EQ(output, "tick 1\ntick 2\ndone\n");
  EXPECT_EQ(returned, (std::vector<int32_t>{10, 20}));
  EXPECT_EQ(ticker->sinkCount(), 0u);
}

}  // namespace
}  // namespace ravelin::script
