// Any bytes, read as UTF-8 script source, either parse or raise a syntax error; anything else
// (another exception, a crash, a sanitizer report) is a bug.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ravelin/host/script/parser.hpp>
#include <ravelin/host/script/tree_printer.hpp>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  try {
    const ravelin::script::Program program = ravelin::script::parseScript(source);
    // Walking the whole tree checks that every node the parser built is complete.
    (void)ravelin::script::printProgram(program);
  } catch (const ravelin::script::SyntaxError& e) {
    if (e.line() == 0 || e.column() == 0) std::abort();
  } catch (...) {
    std::abort();
  }
  return 0;
}
