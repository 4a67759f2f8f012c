// The error handler of SQLUtilities' handled members: an automation error raised inside the
// member reaches the caller with its number, the library's common source and a description
// that names the class and the member before the caught error's own texts.
#pragma once

#include <ravelin/base/text.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin::sql {

// Raises `caught` again: same number, source "Tarn.Quillmark.Common", description
// "clsUtilitiesSQL" + memberTag + CR LF + caught description + CR LF + caught source.
[[noreturn]] void raiseFromHandler(StringView memberTag, const AutomationError& caught);

// Runs `body` under the handler of the member `memberTag` (".functionIIF()").
template <typename Body>
auto underHandler(StringView memberTag, Body&& body) -> decltype(body()) {
  try {
    return body();
  } catch (const AutomationError& caught) {
    raiseFromHandler(memberTag, caught);
  }
}

}  // namespace ravelin::sql
