// clsError: a plain holder of one automation error (code, source, description) that client
// programs carry around and render as one line of text.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class clsError : public PublicClass<clsError> {
 public:
  static constexpr StringView kClassName = u"clsError";

  clsError() = default;

  // The member table late-bound callers see.
  static ClassInfo describe();

  // Stores the three values in the order code, source, description.
  void init(int32_t vlCode, StringView vsSource, StringView vsDescription);

  // "<code>-<description>", a line break (CR LF), then "<" source ">".
  String CompleteErrorDescription() const;

  int32_t getCode() const { return code_; }
  const String& getSource() const { return source_; }
  const String& getDescription() const { return description_; }

  // Setters used by init; the library uses them, they are not published to callers.
  void setCode(int32_t code) { code_ = code; }
  void setSource(StringView source) { source_ = String(source); }
  void setDescription(StringView description) { description_ = String(description); }

 private:
  int32_t code_ = 0;
  String source_;
  String description_;
};

}  // namespace ravelin
