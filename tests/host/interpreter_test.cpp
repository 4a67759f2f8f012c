#include <gtest/gtest.h>

#include <memory>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/syntax_error.hpp>
#include <string>
#include <vector>

namespace ravelin::script {
namespace {

// The test's stand-in for WScript: Echo writes one line of text (Null as "Null", Empty as "",
// objects as their class name).
class Output : public Object {
 public:
  StringView className() const override { return u"Output"; }
  const ClassInfo* memberTable() const override {
    static const ClassInfo table =
        ClassBuilder<Output>(u"Output", false)
            .method(u"Echo", [](Output& self, Variant value) { self.echo(value); }, {u"value"})
            .build();
    return &table;
  }
  void echo(const Variant& value) {
    if (value.isNull()) {
      lines.push_back("Null");
    } else if (value.isObject()) {
      lines.push_back(toUtf8(value.typeName()));
    } else {
      lines.push_back(toUtf8(CStr(value)));
    }
  }
  std::vector<std::string> lines;
};

// A collection for For Each: three fixed items.
class Trio : public Object {
 public:
  StringView className() const override { return u"Trio"; }
  bool enumerate(std::vector<Variant>& items) const override {
    items = {Variant(int16_t{1}), Variant(u"two"), Variant(3.5)};
    return true;
  }
};

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    if (!text.empty()) text += '|';
    text += line;
  }
  return text;
}

struct RunResult {
  std::string output;  // Echo lines joined with |
  std::string error;   // "number source: description @line" of an uncaught error, else ""
};

RunResult runScript(const std::string& source, uint64_t budget = 0) {
  Interpreter interpreter;
  auto out = std::make_shared<Output>();
  interpreter.addGlobalObject(u"out", out);
  interpreter.addGlobalObject(u"trio", std::make_shared<Trio>());
  if (budget != 0) interpreter.setStepBudget(budget);
  RunResult result;
  try {
    interpreter.run(fromUtf8(source));
  } catch (const ScriptError& e) {
    result.error = std::to_string(e.number()) + " " + toUtf8(e.source()) + ": " +
                   toUtf8(e.description()) + " @" + std::to_string(e.line());
  }
  result.output = joined(out->lines);
  return result;
}

struct Case {
  std::string source;
  std::string output;
  std::string error = "";
};

void expectRuns(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.source);
    try {
      const RunResult result = runScript(c.source);
      EXPECT_EQ(result.output, c.output);
      EXPECT_EQ(result.error, c.error);
    } catch (const SyntaxError& e) {
      ADD_FAILURE() << e.what() << " at " << e.line() << ":" << e.column();
    }
  }
}

TEST(InterpreterTest, Smoke) {
  expectRuns({
      {"out.Echo 1 + 2", "3"},
      {"Dim a\na = \"x\"\nout.Echo a & 5", "x5"},
  });
}

}  // namespace
}  // namespace ravelin::script
