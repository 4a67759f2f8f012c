// A field as late binding sees it: an object whose Value is a given value, or which raises the
// given error number when read. It counts its reads.
#pragma once

#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/public_class.hpp>
#include <utility>

namespace ravelin {

class StandInField : public PublicClass<StandInField> {
 public:
  static constexpr StringView kClassName = u"StandInField";
  // An error value (Variant::ErrorValue{3021}) makes a read raise that number.
  explicit StandInField(Variant value) : value_(std::move(value)) {}
  static ClassInfo describe() {
    return ClassBuilder<StandInField>(kClassName, false)
        .get(u"Value",
             [](StandInField& self) -> Variant {
               ++self.reads_;
               if (self.value_.type() == VarType::Error)
                 raiseError(self.value_.asError().code, u"ADODB.Field", u"no current record");
               return self.value_;
             })
        .build();
  }
  int reads() const { return reads_; }

 private:
  Variant value_;
  int reads_ = 0;
};

}  // namespace ravelin
