// Declares a class's member table next to the class, from its typed C++ members: parameter and
// result types are read off the member functions, so the table and the code cannot drift.
//
//   ClassInfo clsError::describe() {
//     return ClassBuilder<clsError>(kClassName)
//         .method(u"init", &clsError::init, {u"vlCode", u"vsSource", u"vsDescription"})
//         .get(u"CompleteErrorDescription", &clsError::CompleteErrorDescription)
//         .build();
//   }
//
// A non-const reference parameter (int16_t&) is published by reference; `optional(name, value)`
// marks an optional parameter with its default.
//
// Members a class takes over from a private base (`using Base::add;`) are called on that base,
// a conversion only the class's own code may write; describe() hands it to the builder:
//
//   ClassBuilder<clsArrayLong, Base>(kClassName, [](clsArrayLong& self) -> Base& { return self; })
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/size_limits.hpp>
#include <tuple>
#include <type_traits>
#include <utility>

namespace ravelin {

// The automation type of a C++ parameter or result type, and the conversion of an argument. A
// type that is not a Variant alternative (a record) also says how it becomes one (`to`).
template <typename T>
struct AutomationType;

#define RAVELIN_AUTOMATION_TYPE(CppType, Tag, Convert)                   \
  template <>                                                            \
  struct AutomationType<CppType> {                                       \
    static constexpr VarType kType = VarType::Tag;                       \
    static CppType from(const Variant& value) { return Convert(value); } \
  }
// For these types the conversion of a value that already has the type is the value itself, so
// such a value skips the conversion's general path.
#define RAVELIN_AUTOMATION_TYPE_AS_IS(CppType, Tag, Convert)                           \
  template <>                                                                          \
  struct AutomationType<CppType> {                                                     \
    static constexpr VarType kType = VarType::Tag;                                     \
    static CppType from(const Variant& value) {                                        \
      return value.type() == VarType::Tag ? CppType(value.as##Tag()) : Convert(value); \
    }                                                                                  \
  }
RAVELIN_AUTOMATION_TYPE_AS_IS(int16_t, Integer, CInt);
RAVELIN_AUTOMATION_TYPE_AS_IS(int32_t, Long, CLng);
RAVELIN_AUTOMATION_TYPE_AS_IS(uint8_t, Byte, CByte);
RAVELIN_AUTOMATION_TYPE_AS_IS(bool, Boolean, CBool);
RAVELIN_AUTOMATION_TYPE(float, Single, CSng);
RAVELIN_AUTOMATION_TYPE_AS_IS(double, Double, CDbl);
RAVELIN_AUTOMATION_TYPE(Currency, Currency, CCur);
RAVELIN_AUTOMATION_TYPE(Date, Date, CDate);
RAVELIN_AUTOMATION_TYPE_AS_IS(String, String, CStr);
#undef RAVELIN_AUTOMATION_TYPE_AS_IS
#undef RAVELIN_AUTOMATION_TYPE

template <>
struct AutomationType<Variant> {
  static constexpr VarType kType = VarType::Variant;
  static Variant from(const Variant& value) { return value; }
};

// A public enumeration travels as a Long; any Long is accepted, as the runtime does.
template <typename E>
requires std::is_enum_v<E>
struct AutomationType<E> {
  static constexpr VarType kType = VarType::Long;
  static E from(const Variant& value) { return static_cast<E>(CLng(value)); }
  static Variant to(E value) { return Variant(static_cast<int32_t>(value)); }
};

// An object parameter takes an object reference or Nothing; anything else is a type mismatch,
// and so is an object of another class than the parameter's.
template <typename T>
struct AutomationType<std::shared_ptr<T>> {
  static constexpr VarType kType = VarType::Object;
  static std::shared_ptr<T> from(const Variant& value) {
    if (!value.isObject()) raiseRuntimeError(vb_error::kTypeMismatch);
    const ObjectRef& object = value.asObject();
    if (!object) return nullptr;
    if constexpr (std::is_same_v<T, Object>) {
      return object;
    } else {
      auto typed = std::dynamic_pointer_cast<T>(object);
      if (!typed) raiseRuntimeError(vb_error::kTypeMismatch);
      return typed;
    }
  }
};

// How a parameter is published: its name, and for an optional one its default.
struct Param {
  Param(const char16_t* parameterName) : name(parameterName) {}
  Param(StringView parameterName) : name(parameterName) {}
  String name;
  bool optional = false;
  Variant defaultValue;  // Empty: the type's zero value (or Missing for a Variant)
};

inline Param optional(StringView name, Variant defaultValue = Variant()) {
  Param param(name);
  param.optional = true;
  param.defaultValue = std::move(defaultValue);
  return param;
}

namespace detail {

// What holds an argument during the call: its plain type, except that a text view is held as
// the text itself so that it outlives the conversion.
template <typename T>
struct StorageFor {
  using type = T;
};
template <>
struct StorageFor<StringView> {
  using type = String;
};
template <typename A>
using StorageOf = typename StorageFor<std::remove_cvref_t<A>>::type;

template <typename A>
constexpr bool kIsByRef =
    std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>;

template <typename R>
Variant toVariant(R&& result) {
  using Plain = std::remove_cvref_t<R>;
  if constexpr (std::is_same_v<Plain, Variant>) {
    return std::forward<R>(result);
  } else if constexpr (requires { AutomationType<Plain>::to(result); }) {
    return AutomationType<Plain>::to(result);
  } else if constexpr (requires { typename Plain::element_type; }) {
    return Variant(ObjectRef(std::forward<R>(result)));
  } else {
    return Variant(std::forward<R>(result));
  }
}

// Checks a value the member hands back (size_limits.hpp): a Double or Single that is not finite
// raises 6, a text or an array past its limit 14 or 7. The types that cannot break a limit pass
// without a look.
template <typename T>
void checkHandedBack(const T& value) {
  if constexpr (std::is_same_v<T, double> || std::is_same_v<T, float>) {
    if (!std::isfinite(value)) raiseRuntimeError(vb_error::kOverflow);
  } else if constexpr (std::is_same_v<T, String>) {
    checkTextLength(value.size());
  } else if constexpr (std::is_same_v<T, SafeArray>) {
    checkArrayElements(value.elements.size());
  } else if constexpr (std::is_same_v<T, Variant>) {
    checkMemberValue(value);
  }
}

// Calls the member with its arguments converted, then checks the result and the by-reference
// arguments; only when all pass are the by-reference arguments written back, so a call that
// fails leaves the caller's values as they were.
template <typename C, typename R, typename... A, typename Call, std::size_t... I>
Variant invokeConverted(Call& call, C& self, std::span<Variant> arguments,
                        std::index_sequence<I...>) {
  std::tuple<StorageOf<A>...> values{AutomationType<StorageOf<A>>::from(arguments[I])...};
  auto checkAndWriteBack = [&] {
    ((kIsByRef<A> ? checkHandedBack(std::get<I>(values)) : void()), ...);
    ((kIsByRef<A> ? void(arguments[I] = toVariant(std::get<I>(values))) : void()), ...);
  };
  if constexpr (std::is_void_v<R>) {
    call(self, std::get<I>(values)...);
    checkAndWriteBack();
    return Variant();
  } else {
    decltype(auto) result = call(self, std::get<I>(values)...);
    checkHandedBack(static_cast<const std::remove_cvref_t<R>&>(result));
    checkAndWriteBack();
    return toVariant(std::forward<decltype(result)>(result));
  }
}

template <typename T>
struct LambdaSignature;
template <typename L, typename R, typename C, typename... A>
struct LambdaSignature<R (L::*)(C&, A...) const> {
  using Result = R;
  using Self = C;
  using Arguments = std::tuple<A...>;
};

}  // namespace detail

// The second argument of a ClassBuilder whose class publishes no members of a private base.
struct NoPrivateBase {};

template <typename C, typename PrivateBase = NoPrivateBase>
class ClassBuilder {
 public:
  // The class's conversion of itself to its private base.
  using Upcast = PrivateBase& (*)(C&);

  // A creatable class gets a factory that default-constructs it; a class that cannot be created
  // by name needs no default constructor.
  explicit ClassBuilder(StringView name,
                        bool creatable = true) requires std::is_same_v<PrivateBase, NoPrivateBase>
      : info_(String(name), creatable ? makeFactory() : ClassInfo::Factory()) {}
  ClassBuilder(StringView name, Upcast upcast) requires(!std::is_same_v<PrivateBase, NoPrivateBase>)
      : info_(String(name), makeFactory()), upcast_(upcast) {}

  template <typename Fn>
  ClassBuilder& method(StringView name, Fn fn, std::initializer_list<Param> params = {}) {
    return add(MemberKind::Method, name, fn, params);
  }
  template <typename Fn>
  ClassBuilder& get(StringView name, Fn fn, std::initializer_list<Param> params = {}) {
    return add(MemberKind::PropertyGet, name, fn, params);
  }
  // A property let: the last parameter of the function is the assigned value.
  template <typename Fn>
  ClassBuilder& let(StringView name, Fn fn, std::initializer_list<Param> params = {}) {
    return add(MemberKind::PropertyLet, name, fn, params);
  }
  template <typename Fn>
  ClassBuilder& set(StringView name, Fn fn, std::initializer_list<Param> params = {}) {
    return add(MemberKind::PropertySet, name, fn, params);
  }

  // An event the class raises, its parameter types given as a function type:
  // .event<void(int32_t)>(u"Timer", {u"lMilliseconds"}).
  template <typename Signature>
  ClassBuilder& event(StringView name, std::initializer_list<Param> params) {
    return addEvent(name, params, static_cast<Signature*>(nullptr));
  }

  ClassInfo build() { return std::move(info_); }

 private:
  template <typename... A>
  ClassBuilder& addEvent(StringView name, std::initializer_list<Param> params, void (*)(A...)) {
    std::array<VarType, sizeof...(A)> types{AutomationType<detail::StorageOf<A>>::kType...};
    std::array<bool, sizeof...(A)> byRef{detail::kIsByRef<A>...};
    EventInfo event{String(name), {}};
    auto param = params.begin();
    for (std::size_t i = 0; i < sizeof...(A); ++i) {
      ParameterInfo info;
      info.type = types[i];
      info.byRef = byRef[i];
      info.name = param != params.end() ? (param++)->name : String(u"value");
      event.parameters.push_back(std::move(info));
    }
    info_.addEvent(std::move(event));
    return *this;
  }

  template <typename R, typename... A>
  ClassBuilder& add(MemberKind kind, StringView name, R (C::*fn)(A...),
                    std::initializer_list<Param> params) {
    return addCall<R, A...>(kind, name, params, [fn](C& self, A... a) -> R {
      return (self.*fn)(std::forward<A>(a)...);
    });
  }
  template <typename R, typename... A>
  ClassBuilder& add(MemberKind kind, StringView name, R (C::*fn)(A...) const,
                    std::initializer_list<Param> params) {
    return addCall<R, A...>(kind, name, params, [fn](C& self, A... a) -> R {
      return (self.*fn)(std::forward<A>(a)...);
    });
  }
  // A member the class takes over from a base (`using Base::add;`).
  template <typename B, typename R, typename... A>
  requires(std::is_base_of_v<B, C> && !std::is_same_v<B, C>) ClassBuilder& add(
      MemberKind kind, StringView name, R (B::*fn)(A...), std::initializer_list<Param> params) {
    return addCall<R, A...>(kind, name, params, [fn, base = reach<B>()](C& self, A... a) -> R {
      return (base(self).*fn)(std::forward<A>(a)...);
    });
  }
  template <typename B, typename R, typename... A>
  requires(std::is_base_of_v<B, C> &&
           !std::is_same_v<B, C>) ClassBuilder& add(MemberKind kind, StringView name,
                                                    R (B::*fn)(A...) const,
                                                    std::initializer_list<Param> params) {
    return addCall<R, A...>(kind, name, params, [fn, base = reach<B>()](C& self, A... a) -> R {
      return (base(self).*fn)(std::forward<A>(a)...);
    });
  }

  // How a member of base B finds B in the object: a public base by conversion, the private base
  // (or a public base of it) through the class's upcast.
  template <typename B>
  auto reach() const {
    if constexpr (std::is_convertible_v<C*, B*>) {
      return [](C& self) -> B& { return self; };
    } else {
      static_assert(std::is_base_of_v<B, PrivateBase>,
                    "a member of a private base needs the class's upcast (ClassBuilder<C, Base>)");
      return [upcast = upcast_](C& self) -> B& { return upcast(self); };
    }
  }

  // A lambda taking the object first: [](C& self, int16_t index) { ... }.
  template <typename L>
  ClassBuilder& add(MemberKind kind, StringView name, L lambda,
                    std::initializer_list<Param> params) {
    using Signature = detail::LambdaSignature<decltype(&L::operator())>;
    return [&]<typename... A>(std::tuple<A...>*) -> ClassBuilder& {
      return addCall<typename Signature::Result, A...>(kind, name, params, lambda);
    }(static_cast<typename Signature::Arguments*>(nullptr));
  }

  template <typename R, typename... A, typename Call>
  ClassBuilder& addCall(MemberKind kind, StringView name, std::initializer_list<Param> params,
                        Call call) {
    MemberInfo member;
    member.name = String(name);
    member.kind = kind;
    member.resultType = resultTypeOf<R>();
    if constexpr (!std::is_void_v<R>)
      member.resultTypeName = declaredTypeName<std::remove_cvref_t<R>>();
    std::array<VarType, sizeof...(A)> types{AutomationType<detail::StorageOf<A>>::kType...};
    std::array<StringView, sizeof...(A)> typeNames{declaredTypeName<detail::StorageOf<A>>()...};
    std::array<bool, sizeof...(A)> byRef{detail::kIsByRef<A>...};
    // Unnamed trailing parameters (the value of a property let) get a generic name.
    auto param = params.begin();
    for (std::size_t i = 0; i < sizeof...(A); ++i) {
      ParameterInfo info;
      info.type = types[i];
      info.typeName = String(typeNames[i]);
      info.byRef = byRef[i];
      if (param != params.end()) {
        info.name = param->name;
        info.optional = param->optional;
        info.defaultValue = param->defaultValue;
        ++param;
      } else {
        info.name = u"value";
      }
      if (info.optional && info.defaultValue.isEmpty()) {
        info.defaultValue =
            info.type == VarType::Variant ? Variant::missing() : zeroValueOf(info.type);
      }
      member.parameters.push_back(std::move(info));
    }
    member.invoke = [call](Object& self, std::span<Variant> arguments) mutable -> Variant {
      return detail::invokeConverted<C, R, A...>(call, static_cast<C&>(self), arguments,
                                                 std::index_sequence_for<A...>{});
    };
    info_.addMember(std::move(member));
    return *this;
  }

  static ClassInfo::Factory makeFactory() {
    if constexpr (std::is_default_constructible_v<C>) {
      return [] { return ObjectRef(makeObject<C>()); };
    } else {
      return {};
    }
  }

  // The name of a record type (kTypeName) or of an object parameter's class (kClassName), for
  // listings; empty for the plain automation types.
  template <typename T>
  static constexpr StringView declaredTypeName() {
    if constexpr (requires { AutomationType<T>::kTypeName; }) {
      return AutomationType<T>::kTypeName;
    } else if constexpr (requires { T::element_type::kClassName; }) {
      return T::element_type::kClassName;
    } else {
      return StringView();
    }
  }

  template <typename R>
  static constexpr VarType resultTypeOf() {
    if constexpr (std::is_void_v<R>) {
      return VarType::Empty;
    } else {
      return AutomationType<std::remove_cvref_t<R>>::kType;
    }
  }

  ClassInfo info_;
  Upcast upcast_ = nullptr;
};

}  // namespace ravelin
