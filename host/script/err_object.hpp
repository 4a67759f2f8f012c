// The script's Err object: the number, source and description of the last error that On Error
// Resume Next caught, with Clear and Raise.
#pragma once

#include <cstdint>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin::script {

class ErrObject : public PublicClass<ErrObject> {
 public:
  static constexpr StringView kClassName = u"ErrObject";
  static ClassInfo describe();

  // Records an error caught by On Error Resume Next.
  void set(const AutomationError& error);
  // Number 0, empty source and description.
  void clear();
  // Raises `number` with the given source and description; an empty one takes the runtime's
  // default (its source "Microsoft VBScript runtime error", the number's standard description).
  [[noreturn]] void raise(int32_t number, const String& source, const String& description);

  int32_t number = 0;
  String source;
  String description;
  String helpFile;
  int32_t helpContext = 0;
};

}  // namespace ravelin::script
