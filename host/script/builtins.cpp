// Name lookup over the families' tables, the shared argument helpers and the script's clock.
#include <algorithm>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/host/script/builtin_args.hpp>
#include <ravelin/host/script/builtins.hpp>

namespace ravelin::script {

namespace detail {

const Variant& argumentAt(std::span<const Variant> args, std::size_t i) {
  static const Variant kMissing = Variant::missing();
  return i < args.size() ? args[i] : kMissing;
}

bool isGiven(std::span<const Variant> args, std::size_t i) {
  return i < args.size() && !args[i].isMissing();
}

int32_t longArgument(std::span<const Variant> args, std::size_t i, int32_t fallback) {
  if (!isGiven(args, i)) return fallback;
  return CLng(args[i]);
}

String textArgument(const Variant& value) {
  return CStr(value);
}

bool isTextCompare(std::span<const Variant> args, std::size_t i) {
  const int32_t mode = longArgument(args, i, 0);
  if (mode != 0 && mode != 1) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  return mode == 1;
}

void checkTextLength(std::size_t length) {
  if (length > kMaxTextLength) raiseRuntimeError(kOutOfStringSpace);
}

void appendWithinLimit(String& text, StringView piece) {
  checkTextLength(text.size() + piece.size());
  text.append(piece);
}

}  // namespace detail

namespace {

const Builtin* findIn(std::span<const Builtin> table, StringView name) {
  const auto it =
      std::lower_bound(table.begin(), table.end(), name, [](const Builtin& entry, StringView key) {
        return detail::compareNames(entry.name, key) < 0;
      });
  if (it == table.end() || detail::compareNames(it->name, name) != 0) return nullptr;
  return &*it;
}

}  // namespace

const Builtin* findBuiltin(StringView name) {
  for (const auto table : {detail::conversionBuiltins(), detail::mathBuiltins(),
                           detail::textBuiltins(), detail::dateBuiltins()}) {
    if (const Builtin* found = findIn(table, name)) return found;
  }
  return nullptr;
}

}  // namespace ravelin::script
