// Any bytes, read as UTF-8 script source, run with a step budget: the run ends normally or with
// a syntax error, a script error or a quit; anything else (another exception, a crash, a hang,
// a sanitizer report) is a bug. Objects come only from the library's registry, whose classes
// are in-memory containers, so a script cannot reach files or processes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/syntax_error.hpp>
#include <string_view>

namespace {

// WScript's stand-in: Echo converts its argument to text as the host would, then drops it.
class Sink : public ravelin::Object {
 public:
  ravelin::StringView className() const override { return u"Sink"; }
  const ravelin::ClassInfo* memberTable() const override {
    static const ravelin::ClassInfo table =
        ravelin::ClassBuilder<Sink>(u"Sink", false)
            .method(u"Echo",
                    [](Sink& self, ravelin::Variant value) {
                      if (!value.isNull() && !value.isObject()) {
                        self.units += ravelin::CStr(value).size();
                      }
                    },
                    {ravelin::optional(u"value")})
            .build();
    return &table;
  }
  std::size_t units = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  ravelin::script::Interpreter interpreter;
  interpreter.addGlobalObject(u"WScript", std::make_shared<Sink>());
  interpreter.setStepBudget(10000);
  try {
    interpreter.run(ravelin::fromUtf8(source));
  } catch (const ravelin::script::SyntaxError&) {
  } catch (const ravelin::script::ScriptError& e) {
    if (e.line() == 0 && e.number() != ravelin::script::kStepBudgetExceeded) std::abort();
  } catch (const ravelin::script::ScriptQuit&) {
  } catch (...) {
    std::abort();
  }
  return 0;
}
