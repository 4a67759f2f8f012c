// IObject: the library's one interface for objects that name their class, copy state from or to
// another object of their kind, produce a copy of themselves and answer a named parameter.
//
// Containers and a few other classes implement it beside their own members, so that a client can
// duplicate any of them through one reference type. Each implementing class picks one of four
// behaviours per operation (accept and ignore, copy, refuse in one of two error styles); the
// shared behaviours live in the bases below. Late-bound callers cannot switch interfaces, so
// publishCopyInterface puts the five operations into a class's own member table.
#pragma once

#include <cstdint>
#include <memory>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/object.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

class IObject;
using IObjectRef = std::shared_ptr<IObject>;

class IObject : public Object {
 public:
  // The interface's name, as listings show an IObject parameter.
  static constexpr StringView kClassName = u"IObject";

  // The interface's own member table: a public class that cannot be created, so that listings
  // and late-bound callers can see it.
  static ClassInfo describe();

  // The implementing class's identifier text (not always its class name).
  virtual String getClassIdAsString() const = 0;
  // Makes this object a copy of voObjectToCopy. vlCopyWhat selects what to copy; -1 is
  // everything, and no implementation copies less.
  virtual void copyObject(const IObjectRef& voObjectToCopy, int32_t vlCopyWhat = -1) = 0;
  // Makes voCopyTo a copy of this object.
  virtual void copyToObject(const IObjectRef& voCopyTo, int32_t vlCopyWhat = -1) = 0;
  // A new object that is a copy of this one, or Nothing where the class makes no copies.
  virtual IObjectRef generateCopy(int32_t vlCopyWhat = -1) = 0;
  // The value of a named parameter; no implementation knows any.
  virtual Variant getParameterValue(StringView vsParameterName) = 0;

 protected:
  IObject() = default;
  IObject(const IObject&) = default;
  IObject& operator=(const IObject&) = default;
};

// The operation texts that the refusals report.
namespace copy_operation {
inline constexpr StringView kCopyObject = u".copyObject()";
inline constexpr StringView kCopyToObject = u".copyToObject()";
inline constexpr StringView kGenerateCopy = u".generateCopy()";
inline constexpr StringView kGetParameterValue = u".getParameterValue()";
inline constexpr StringView kInterfaceCopyObject = u".IObject_copyObject()";
inline constexpr StringView kInterfaceCopyToObject = u".IObject_copyToObject()";
inline constexpr StringView kInterfaceGenerateCopy = u".IObject_generateCopy()";
}  // namespace copy_operation

// The argument of a copying copyObject as the class it must be: Nothing raises 91 (a call on
// Nothing) and an object of another class 13 (the failed conversion); no library code is raised.
template <typename T>
std::shared_ptr<T> copySourceAs(const IObjectRef& source) {
  if (!source) raiseRuntimeError(vb_error::kObjectNotSet);
  auto typed = std::dynamic_pointer_cast<T>(source);
  if (!typed) raiseRuntimeError(vb_error::kTypeMismatch);
  return typed;
}

// Accepts every copy request and ignores it, produces no copy and answers no parameter.
class IgnoringCopyObject : public IObject {
 public:
  String getClassIdAsString() const override { return String(classId_); }
  void copyObject(const IObjectRef& /*voObjectToCopy*/, int32_t /*vlCopyWhat*/ = -1) override {}
  void copyToObject(const IObjectRef& /*voCopyTo*/, int32_t /*vlCopyWhat*/ = -1) override {}
  IObjectRef generateCopy(int32_t /*vlCopyWhat*/ = -1) override { return nullptr; }
  Variant getParameterValue(StringView /*vsParameterName*/) override { return Variant(); }

 protected:
  explicit IgnoringCopyObject(StringView classId) : classId_(classId) {}

 private:
  StringView classId_;
};

// Refuses the three copy operations with CCEC_FeatureNotImplemented, source the common source
// and description the identifier followed by ".IObject_copyObject()" and its siblings; answers
// no parameter.
class RefusingCopyObject : public IObject {
 public:
  String getClassIdAsString() const override { return String(classId_); }
  [[noreturn]] void copyObject(const IObjectRef& voObjectToCopy, int32_t vlCopyWhat = -1) override;
  [[noreturn]] void copyToObject(const IObjectRef& voCopyTo, int32_t vlCopyWhat = -1) override;
  [[noreturn]] IObjectRef generateCopy(int32_t vlCopyWhat = -1) override;
  Variant getParameterValue(StringView /*vsParameterName*/) override { return Variant(); }

 protected:
  explicit RefusingCopyObject(StringView classId) : classId_(classId) {}

 private:
  StringView classId_;
};

// Refuses all four operations with CCEC_FeatureNotImplemented, source the identifier text and
// description the bare operation text (".copyObject()").
class UnsupportedCopyObject : public IObject {
 public:
  String getClassIdAsString() const override { return String(classId_); }
  [[noreturn]] void copyObject(const IObjectRef& voObjectToCopy, int32_t vlCopyWhat = -1) override;
  [[noreturn]] void copyToObject(const IObjectRef& voCopyTo, int32_t vlCopyWhat = -1) override;
  [[noreturn]] IObjectRef generateCopy(int32_t vlCopyWhat = -1) override;
  [[noreturn]] Variant getParameterValue(StringView vsParameterName) override;

 protected:
  explicit UnsupportedCopyObject(StringView classId) : classId_(classId) {}

 private:
  StringView classId_;
};

// Adds the five operations of the copy interface to a class's member table. Call it before the
// class's own members: a member of the same name declared later replaces the interface's.
// The object arguments are published by reference, as the interface declares them.
template <typename C, typename PrivateBase>
ClassBuilder<C, PrivateBase>& publishCopyInterface(ClassBuilder<C, PrivateBase>& builder) {
  static_assert(std::is_base_of_v<IObject, C>);
  return builder
      .method(u"getClassIdAsString",
              [](C& self) { return static_cast<IObject&>(self).getClassIdAsString(); })
      .method(u"copyObject",
              [](C& self, IObjectRef& voObjectToCopy, int32_t vlCopyWhat) {
                static_cast<IObject&>(self).copyObject(voObjectToCopy, vlCopyWhat);
              },
              {u"voObjectToCopy", optional(u"vlCopyWhat", int32_t{-1})})
      .method(u"copyToObject",
              [](C& self, IObjectRef& voCopyTo, int32_t vlCopyWhat) {
                static_cast<IObject&>(self).copyToObject(voCopyTo, vlCopyWhat);
              },
              {u"voCopyTo", optional(u"vlCopyWhat", int32_t{-1})})
      .method(u"generateCopy",
              [](C& self, int32_t vlCopyWhat) {
                return static_cast<IObject&>(self).generateCopy(vlCopyWhat);
              },
              {optional(u"vlCopyWhat", int32_t{-1})})
      .method(u"getParameterValue",
              [](C& self, const String& vsParameterName) {
                return static_cast<IObject&>(self).getParameterValue(vsParameterName);
              },
              {u"vsParameterName"});
}

}  // namespace ravelin
