#include <gtest/gtest.h>

#include <memory>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <string>
#include <vector>

namespace ravelin::script {
namespace {

// The test's stand-in for WScript: Echo keeps each line.
class Output : public PublicClass<Output> {
 public:
  static constexpr StringView kClassName = u"Output";
  static ClassInfo describe() {
    return ClassBuilder<Output>(kClassName, false)
        .method(u"Echo", [](Output& self, Variant value) { self.lines.push_back(CStr(value)); },
                {u"value"})
        .build();
  }
  std::vector<String> lines;
};

// Runs the script and returns its Echo lines joined with "|", or the uncaught error's number.
std::string run(const std::string& source) {
  auto out = makeObject<Output>();
  std::string text;
  try {
    Interpreter interpreter;
    interpreter.addGlobalObject(u"out", out);
    interpreter.run(fromUtf8(source));
  } catch (const ScriptError& error) {
    return "error " + std::to_string(error.number());
  }
  for (const String& line : out->lines)
    text += (text.empty() ? "" : "|") + toUtf8(line);
  return text;
}

// Values nested far deeper than a release by recursion survives are let go by the script, or by
// the interpreter when the script ends, and the script goes on.
TEST(DeepReleaseTest, DeeplyNestedValuesAreReleased) {
  struct Row {
    const char* name;
    std::string source;
    std::string output;
  };
  const Row rows[] = {
      {"arrays emptied",
       "For i = 1 To 200000 : x = Array(x) : Next : x = Empty : out.Echo IsEmpty(x)", "True"},
      {"arrays left to the end of the script",
       "For i = 1 To 300000 : x = Array(1, x) : Next : out.Echo UBound(x)", "1"},
      {"a chain of collections",
       "Set p = Nothing\n"
       "For i = 1 To 300000\n"
       "  Set c = CreateObject(\"Ravelin.clsCollection\")\n"
       "  c.add p, \"previous\"\n"
       "  Set p = c\n"
       "Next\n"
       "out.Echo p.getCount\n"
       "Set c = Nothing : Set p = Nothing : out.Echo TypeName(p)",
       "1|Nothing"},
      {"a chain of enumerators, each the only item of a collection",
       "For i = 1 To 300000\n"
       "  Set c = CreateObject(\"Ravelin.clsCollection\")\n"
       "  If i > 1 Then c.add e, \"previous\"\n"
       "  Set e = c.NewEnum\n"
       "Next\n"
       "Set c = Nothing : Set e = Nothing : out.Echo TypeName(e)",
       "Nothing"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(run(row.source), row.output);
  }
}

}  // namespace
}  // namespace ravelin::script
