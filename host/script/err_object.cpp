#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/host/script/err_object.hpp>
#include <ravelin/host/script/script_scope.hpp>

namespace ravelin::script {
namespace {

String textOrEmpty(const Variant& value) {
  return value.isMissing() ? String() : CStr(value);
}

}  // namespace

ClassInfo ErrObject::describe() {
  return ClassBuilder<ErrObject>(kClassName, false)
      // Number is the default member: "If Err Then" and "WScript.Echo Err" read it.
      .get(u"", [](ErrObject& self) { return self.number; })
      .get(u"Number", [](ErrObject& self) { return self.number; })
      .let(u"Number", [](ErrObject& self, int32_t value) { self.number = value; })
      .get(u"Source", [](ErrObject& self) { return self.source; })
      .let(u"Source", [](ErrObject& self, String value) { self.source = std::move(value); })
      .get(u"Description", [](ErrObject& self) { return self.description; })
      .let(u"Description",
           [](ErrObject& self, String value) { self.description = std::move(value); })
      .get(u"HelpFile", [](ErrObject& self) { return self.helpFile; })
      .let(u"HelpFile", [](ErrObject& self, String value) { self.helpFile = std::move(value); })
      .get(u"HelpContext", [](ErrObject& self) { return self.helpContext; })
      .let(u"HelpContext", [](ErrObject& self, int32_t value) { self.helpContext = value; })
      .method(u"Clear", [](ErrObject& self) { self.clear(); })
      .method(u"Raise",
              [](ErrObject& self, int32_t number, Variant source, Variant description,
                 Variant helpFile, Variant helpContext) {
                self.helpFile = textOrEmpty(helpFile);
                self.helpContext = helpContext.isMissing() ? 0 : CLng(helpContext);
                self.raise(number, textOrEmpty(source), textOrEmpty(description));
              },
              {u"number", optional(u"source"), optional(u"description"), optional(u"helpfile"),
               optional(u"helpcontext")})
      .build();
}

void ErrObject::set(const AutomationError& error) {
  number = error.number();
  source = error.source();
  description = error.description();
}

void ErrObject::clear() {
  number = 0;
  source.clear();
  description.clear();
  helpFile.clear();
  helpContext = 0;
}

void ErrObject::raise(int32_t errorNumber, const String& errorSource,
                      const String& errorDescription) {
  if (errorNumber == 0) detail::raiseScriptError(vb_error::kInvalidProcedureCall);
  number = errorNumber;
  source = errorSource.empty() ? String(detail::kScriptRuntimeSource) : errorSource;
  description =
      errorDescription.empty() ? detail::scriptErrorDescription(errorNumber) : errorDescription;
  throw AutomationError(number, source, description);
}

}  // namespace ravelin::script
