// Any bytes, read as UTF-8 script source, run with a step budget: the run ends normally or with
// a syntax error, a script error or a quit; anything else (another exception, a crash, a hang,
// a sanitizer report) is a bug. Objects come only from the library's registry, whose classes
// are in-memory containers, so a script cannot reach files or processes.
//
// A script may ask for as much memory as it likes (allocateSpacePublic takes any Long), and
// running out of it is an error the script sees (7), not a bug. So that such a request ends
// that way here instead of exhausting the fuzzer's memory limit, the program's allocations share
// a budget: past it, operator new throws std::bad_alloc as a full heap would.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/host/script/interpreter.hpp>
#include <ravelin/host/script/syntax_error.hpp>
#include <string_view>

namespace {

constexpr std::size_t kMemoryBudget = std::size_t{256} << 20;
std::size_t liveBytes = 0;

// Each block carries its size in front, so that a release can give it back to the budget.
struct alignas(std::max_align_t) BlockHeader {
  std::size_t size;
};

void* allocateCounted(std::size_t size) {
  if (size > kMemoryBudget - liveBytes) throw std::bad_alloc();
  auto* header = static_cast<BlockHeader*>(std::malloc(sizeof(BlockHeader) + size));
  if (header == nullptr) throw std::bad_alloc();
  header->size = size;
  liveBytes += size;
  return header + 1;
}

void releaseCounted(void* block) noexcept {
  if (block == nullptr) return;
  BlockHeader* header = static_cast<BlockHeader*>(block) - 1;
  liveBytes -= header->size;
  std::free(header);
}

// WScript's stand-in: Echo converts its argument to text as the host would, then drops it.
class Sink : public ravelin::PublicClass<Sink> {
 public:
  static constexpr ravelin::StringView kClassName = u"Sink";
  static ravelin::ClassInfo describe() {
    return ravelin::ClassBuilder<Sink>(kClassName, false)
        .method(u"Echo",
                [](Sink& self, ravelin::Variant value) {
                  if (!value.isNull() && !value.isObject()) {
                    self.units += ravelin::CStr(value).size();
                  }
                },
                {ravelin::optional(u"value")})
        .build();
  }
  std::size_t units = 0;
};

}  // namespace

// Every form of the unaligned operators goes through the budget: the sanitizer runtime defines
// them all, and a block must be released by the same family that allocated it.
void* operator new(std::size_t size) {
  return allocateCounted(size);
}
void* operator new[](std::size_t size) {
  return allocateCounted(size);
}
void operator delete(void* block) noexcept {
  releaseCounted(block);
}
void operator delete[](void* block) noexcept {
  releaseCounted(block);
}
void operator delete(void* block, std::size_t) noexcept {
  releaseCounted(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  releaseCounted(block);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return allocateCounted(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  releaseCounted(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  releaseCounted(block);
}

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
