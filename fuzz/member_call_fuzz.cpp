// Drives the library's classes by member name, as a late-bound client does, with generated
// argument lists: every value type, edge numbers, long texts, Null, Empty, omitted, named,
// by-reference, missing and surplus arguments, other library objects, arrays and records. Each
// input creates one object of a creatable class, fills it through a few well-formed calls, then
// makes up to 32 calls in all. Two things must hold:
// - no call crashes, trips a sanitizer or throws anything but a library error (AutomationError)
//   or std::bad_alloc (memory_budget.cpp caps the program at 256 MiB);
// - a call that fails changes nothing a client can see: the object it was made on and the
//   objects passed to it read back as before the call, and, when it raised, so do the caller's
//   by-reference variables. A call fails when it raises, or when a member whose name starts with
//   add, remove or set answers False: the containers report a refusal that way ("false when the
//   array cannot grow; it is then unchanged"), so such a member must not change anything before
//   it answers False.
//
// What a client can see of an object (its snapshot), read through the class's own member table:
// - every property get that can be called without arguments;
// - every method that can be called without arguments and whose name says it only reads: the
//   names starting with get, is, has, count or list (in any case). Methods outside this list
//   (CreateGUID, generateCopy, removeLastItem, resetSearch) are never called for a snapshot;
// - the indexed reads: a property get, or a method whose name starts with get or item, whose
//   first parameter is an index (its name contains "Index") and whose other parameters are
//   optional or by-reference outputs. They are read at the indices around both ends of the
//   object's count (its Count or getCount): -1 to 17 (or count + 1) and count - 16 to count + 1,
//   so 0- and 1-based classes are covered; the outputs' final values are part of the reading;
// - the items For Each walks (Object::enumerate), where the class enumerates.
// Two snapshots in a row must agree, which checks that the reads only read.
// A reading that raises is recorded as its error number. Readings compare as Variant equality
// does (arrays element by element, objects by identity), except that a NaN equals a NaN, and an
// object the read has just made (no one else holds it: a copy, a key list, an enumerator)
// compares by its class and its own snapshot. A reading that ran out of memory (error 7) on
// either side proves nothing and is skipped, since the snapshot taken before a call is still held
// while the one after it is taken.
//
// Reference counting never frees an object that holds itself, so an input that built a cycle
// would leak, and over a run fill the memory budget. So the object under test is passed to its
// own members only as the argument of the copy members (names containing "copy"), which keep no
// reference to it, and every other object argument is a new object, or one a call returned that
// nothing else holds, passed once; the object under test must be gone once the input lets go of
// it.
//
// With RAVELIN_MEMBER_CALL_TRACE set in the environment each call is printed with its outcome as
// it is made, which turns a reproducer into a readable call sequence. A finding prints the calls
// of its input and aborts.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cfloat>
#include <cinttypes>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <exception>
#include <initializer_list>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/records.hpp>
#include <ravelin/frame/size_limits.hpp>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "sandbox.hpp"

namespace ravelin::fuzzing {
namespace {

constexpr int kMaxCalls = 32;
constexpr int kMaxFillingCalls = 6;
constexpr int kMaxHelperFillingCalls = 3;
constexpr int kMaxHelpersPerInput = 8;
constexpr std::size_t kMaxTextUnits = 4096;
constexpr std::size_t kMaxBytesText = 64;
constexpr int kMaxSurplusArguments = 3;
constexpr int kMaxGeneratedElements = 8;
constexpr int kMaxValueDepth = 2;
constexpr int32_t kEdgeIndices = 16;
constexpr int kSnapshotDepth = 2;
constexpr std::size_t kMaxSpares = 4;
constexpr std::size_t kShownUnits = 40;
constexpr std::size_t kShownElements = 8;

// ---------------------------------------------------------------------------------------------
// What the input did so far, for the report of a finding.

bool tracing = false;
std::vector<std::string> trace;
// The names of the objects the input made ("target", "obj1"), by address; an entry counts only
// while its object lives, since a later object may take the same address.
std::map<const Object*, std::pair<std::weak_ptr<Object>, std::string>> objectNames;

void nameObject(const ObjectRef& object, std::string name) {
  objectNames[object.get()] = {object, std::move(name)};
}

void note(std::string line) {
  if (tracing) std::fprintf(stderr, "  %s\n", line.c_str());
  trace.push_back(std::move(line));
}

[[noreturn]] void finding(const std::string& what) {
  std::fprintf(stderr, "\nmember_call_fuzz: FINDING: %s\nThe calls of this input:\n", what.c_str());
  for (const std::string& line : trace)
    std::fprintf(stderr, "  %s\n", line.c_str());
  std::fflush(stderr);
  std::abort();
}

// ---------------------------------------------------------------------------------------------
// Readable values.

std::string showText(StringView text) {
  std::string shown = "\"";
  const std::size_t count = std::min(text.size(), kShownUnits);
  for (std::size_t i = 0; i < count; ++i) {
    const char16_t unit = text[i];
    if (unit >= 0x20 && unit < 0x7f && unit != u'"' && unit != u'\\') {
      shown += static_cast<char>(unit);
    } else {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(unit));
      shown += escaped;
    }
  }
  shown += "\"";
  if (text.size() > count) shown += "...(" + std::to_string(text.size()) + " units)";
  return shown;
}

std::string showNumber(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}

std::string showObject(const Object* object) {
  if (object == nullptr) return "Nothing";
  const auto named = objectNames.find(object);
  if (named != objectNames.end() && named->second.first.lock().get() == object) {
    return named->second.second;
  }
  return "a " + toUtf8(object->className());
}

std::string show(const Variant& value) {
  switch (value.type()) {
    case VarType::Empty:
      return "Empty";
    case VarType::Null:
      return "Null";
    case VarType::Integer:
      return "Integer " + std::to_string(value.asInteger());
    case VarType::Long:
      return "Long " + std::to_string(value.asLong());
    case VarType::Byte:
      return "Byte " + std::to_string(value.asByte());
    case VarType::Boolean:
      return value.asBoolean() ? "True" : "False";
    case VarType::Single:
      return "Single " + showNumber(value.asSingle());
    case VarType::Double:
      return "Double " + showNumber(value.asDouble());
    case VarType::Currency:
      return "Currency " + std::to_string(value.asCurrency().scaled()) + "/10000";
    case VarType::Date:
      return "Date " + showNumber(value.asDate().serial);
    case VarType::String:
      return "String " + showText(value.asString());
    case VarType::Object:
      return showObject(value.asObject().get());
    case VarType::Error: {
      if (value.isMissing()) return "Missing";
      char text[24];
      std::snprintf(text, sizeof text, "Error 0x%08" PRIx32,
                    static_cast<uint32_t>(value.asError().code));
      return text;
    }
    case VarType::Record: {
      const Record& record = value.asRecord();
      std::string shown = "Record " + toUtf8(record.typeName) + "{";
      for (std::size_t i = 0; i < record.fields.size(); ++i) {
        if (i > 0) shown += ", ";
        shown += toUtf8(record.fields[i].first) + "=" + show(record.fields[i].second);
      }
      return shown + "}";
    }
    default:
      break;
  }
  if (value.isArray()) {
    const SafeArray& array = value.asArray();
    std::string shown = "Array " + toUtf8(varTypeName(array.elementType)) + "(";
    for (std::size_t i = 0; i < array.bounds.size(); ++i) {
      if (i > 0) shown += ", ";
      shown += std::to_string(array.bounds[i].lower) + " to " +
               std::to_string(int64_t{array.bounds[i].lower} + array.bounds[i].count - 1);
    }
    shown += ") {";
    const std::size_t count = std::min(array.elements.size(), kShownElements);
    for (std::size_t i = 0; i < count; ++i) {
      if (i > 0) shown += ", ";
      shown += show(array.elements[i]);
    }
    if (array.elements.size() > count) shown += ", ...";
    return shown + "}";
  }
  return "VarType " + std::to_string(value.varTypeCode());
}

std::string showKind(MemberKind kind) {
  switch (kind) {
    case MemberKind::Method:
      return "";
    case MemberKind::PropertyGet:
      return " [Get]";
    case MemberKind::PropertyLet:
      return " [Let]";
    case MemberKind::PropertySet:
      return " [Set]";
  }
  return "";
}

std::string showCall(const Object* object, StringView name, MemberKind kind,
                     std::span<const CallArgument> arguments) {
  std::string shown = showObject(object) + "." + toUtf8(name) + showKind(kind) + "(";
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const CallArgument& argument = arguments[i];
    if (i > 0) shown += ", ";
    if (!argument.name.empty()) shown += toUtf8(argument.name) + ":=";
    if (argument.omitted) {
      shown += "<omitted>";
      continue;
    }
    if (argument.variable != nullptr) shown += "ByRef ";
    shown += show(argument.value);
  }
  return shown + ")";
}

// ---------------------------------------------------------------------------------------------
// Which members read an object's state.

bool startsWithIgnoreCase(StringView text, StringView prefix) {
  return text.size() >= prefix.size() && equalsIgnoreCase(text.substr(0, prefix.size()), prefix);
}

bool containsIgnoreCase(StringView text, StringView part) {
  return toUpper(text).find(toUpper(part)) != String::npos;
}

bool startsWithAny(StringView name, std::initializer_list<StringView> prefixes) {
  return std::any_of(prefixes.begin(), prefixes.end(),
                     [name](StringView prefix) { return startsWithIgnoreCase(name, prefix); });
}

bool callableWithoutArguments(const MemberInfo& member) {
  return std::all_of(member.parameters.begin(), member.parameters.end(),
                     [](const ParameterInfo& parameter) { return parameter.optional; });
}

bool isPlainRead(const MemberInfo& member) {
  if (!callableWithoutArguments(member)) return false;
  if (member.kind == MemberKind::PropertyGet) return true;
  return member.kind == MemberKind::Method &&
         startsWithAny(member.name, {u"get", u"is", u"has", u"count", u"list"});
}

bool isIndexedRead(const MemberInfo& member) {
  const bool reads =
      member.kind == MemberKind::PropertyGet ||
      (member.kind == MemberKind::Method && startsWithAny(member.name, {u"get", u"item"}));
  if (!reads || member.parameters.empty()) return false;
  if (!containsIgnoreCase(member.parameters[0].name, u"Index")) return false;
  return std::all_of(
      member.parameters.begin() + 1, member.parameters.end(),
      [](const ParameterInfo& parameter) { return parameter.optional || parameter.byRef; });
}

struct ClassReads {
  std::vector<const MemberInfo*> plain;
  std::vector<const MemberInfo*> indexed;
  const MemberInfo* count = nullptr;  // the plain read that gives the number of items
};

const ClassReads& readsOf(const ClassInfo& info) {
  static std::map<const ClassInfo*, ClassReads> known;
  auto [entry, added] = known.try_emplace(&info);
  if (added) {
    for (const MemberInfo& member : info.members()) {
      if (isPlainRead(member)) {
        entry->second.plain.push_back(&member);
        if (entry->second.count == nullptr && (equalsIgnoreCase(member.name, u"Count") ||
                                               equalsIgnoreCase(member.name, u"getCount"))) {
          entry->second.count = &member;
        }
      } else if (isIndexedRead(member)) {
        entry->second.indexed.push_back(&member);
      }
    }
  }
  return entry->second;
}

// ---------------------------------------------------------------------------------------------
// Snapshots.

struct Reading {
  std::string label;  // "getCount()", "item(3)", "ItemAndKey(3) vsKey", "For Each"
  Variant value;
  int32_t error = 0;           // the number the read raised, or 0
  std::vector<Reading> inner;  // the snapshot of an object the read has just made
};

struct Snapshot {
  std::vector<Reading> readings;
  bool ranOutOfMemory = false;
};

Snapshot snapshotOf(Object& object, int depth);

// Calls one read; a library error or running out of memory is the reading.
void read(Object& object, const MemberInfo& member, std::span<CallArgument> arguments,
          std::string label, int depth, Snapshot& snapshot) {
  Reading reading;
  reading.label = std::move(label);
  try {
    reading.value = callMember(object, member, arguments);
  } catch (const AutomationError& error) {
    reading.error = error.number();
  } catch (const std::bad_alloc&) {
    reading.error = vb_error::kOutOfMemory;
  } catch (const std::exception& error) {
    finding("reading " + showObject(&object) + "." + reading.label + " threw " + error.what());
  } catch (...) {
    finding("reading " + showObject(&object) + "." + reading.label +
            " threw a non-standard exception");
  }
  if (reading.error == vb_error::kOutOfMemory) snapshot.ranOutOfMemory = true;
  if (reading.value.isObject() && reading.value.asObject() &&
      reading.value.asObject().use_count() == 1) {
    // Made by the read itself: its identity is new each time, its content is what counts.
    ObjectRef made = reading.value.asObject();
    reading.value = Variant(String(made->className()));
    if (depth < kSnapshotDepth) {
      Snapshot inner = snapshotOf(*made, depth + 1);
      reading.inner = std::move(inner.readings);
      snapshot.ranOutOfMemory = snapshot.ranOutOfMemory || inner.ranOutOfMemory;
    }
  }
  snapshot.readings.push_back(std::move(reading));
}

int32_t countFrom(const Snapshot& snapshot, const ClassReads& reads) {
  if (reads.count == nullptr) return 0;
  for (const Reading& reading : snapshot.readings) {
    if (reading.label != toUtf8(reads.count->name) + "()" || reading.error != 0) continue;
    try {
      return std::clamp<int32_t>(CLng(reading.value), 0,
                                 static_cast<int32_t>(ravelin::kMaxArrayElements));
    } catch (const AutomationError&) {
      return 0;
    }
  }
  return 0;
}

Snapshot snapshotOf(Object& object, int depth) {
  Snapshot snapshot;
  const ClassReads& reads = readsOf(object.classInfo());
  for (const MemberInfo* member : reads.plain) {
    read(object, *member, {}, toUtf8(member->name) + "()", depth, snapshot);
  }

  if (!reads.indexed.empty()) {
    const int32_t count = countFrom(snapshot, reads);
    std::set<int32_t> indices;
    for (int32_t i = -1; i <= std::min(count, kEdgeIndices) + 1; ++i)
      indices.insert(i);
    for (int32_t i = std::max(-1, count - kEdgeIndices); i <= count + 1; ++i)
      indices.insert(i);
    for (const MemberInfo* member : reads.indexed) {
      for (const int32_t index : indices) {
        std::deque<Variant> outputs;
        std::vector<CallArgument> arguments{CallArgument(Variant(index))};
        for (std::size_t p = 1; p < member->parameters.size(); ++p) {
          if (member->parameters[p].optional) break;
          arguments.emplace_back(Variant(), &outputs.emplace_back());
        }
        const std::string label = toUtf8(member->name) + "(" + std::to_string(index) + ")";
        read(object, *member, arguments, label, depth, snapshot);
        for (std::size_t p = 1; p < arguments.size(); ++p) {
          Reading output;
          output.label = label + " " + toUtf8(member->parameters[p].name);
          output.value = outputs[p - 1];
          snapshot.readings.push_back(std::move(output));
        }
      }
    }
  }

  Reading walked;
  walked.label = "For Each";
  try {
    std::vector<Variant> items;
    if (object.enumerate(items)) {
      SafeArray array = SafeArray::vector(VarType::Variant, 0, -1);
      array.bounds[0].count = static_cast<int32_t>(items.size());
      array.elements = std::move(items);
      walked.value = Variant(std::move(array));
      snapshot.readings.push_back(std::move(walked));
    }
  } catch (const std::bad_alloc&) {
    walked.error = vb_error::kOutOfMemory;
    snapshot.ranOutOfMemory = true;
    snapshot.readings.push_back(std::move(walked));
  } catch (const std::exception& error) {
    finding("For Each over " + showObject(&object) + " threw " + error.what());
  }
  return snapshot;
}

bool sameValue(const Variant& a, const Variant& b) {
  if (a == b) return true;
  if (a.type() != b.type()) return false;
  switch (a.type()) {
    case VarType::Double:
      return std::isnan(a.asDouble()) && std::isnan(b.asDouble());
    case VarType::Single:
      return std::isnan(a.asSingle()) && std::isnan(b.asSingle());
    case VarType::Date:
      return std::isnan(a.asDate().serial) && std::isnan(b.asDate().serial);
    case VarType::Record: {
      const Record& x = a.asRecord();
      const Record& y = b.asRecord();
      if (x.typeName != y.typeName || x.fields.size() != y.fields.size()) return false;
      for (std::size_t i = 0; i < x.fields.size(); ++i) {
        if (x.fields[i].first != y.fields[i].first) return false;
        if (!sameValue(x.fields[i].second, y.fields[i].second)) return false;
      }
      return true;
    }
    default:
      break;
  }
  if (a.isArray()) {
    const SafeArray& x = a.asArray();
    const SafeArray& y = b.asArray();
    if (x.bounds.size() != y.bounds.size() || x.elements.size() != y.elements.size()) return false;
    for (std::size_t i = 0; i < x.bounds.size(); ++i) {
      if (x.bounds[i].lower != y.bounds[i].lower || x.bounds[i].count != y.bounds[i].count) {
        return false;
      }
    }
    for (std::size_t i = 0; i < x.elements.size(); ++i) {
      if (!sameValue(x.elements[i], y.elements[i])) return false;
    }
    return true;
  }
  return false;
}

std::string showReading(const Reading& reading) {
  if (reading.error != 0) return "error " + std::to_string(reading.error);
  std::string shown = show(reading.value);
  if (!reading.inner.empty()) shown += " made by the read";
  return shown;
}

// The first reading that differs, described; none when the snapshots agree. Readings present on
// one side only (the indices follow the count) differ unless memory ran out on either side.
std::optional<std::string> firstDifference(const std::vector<Reading>& before,
                                           const std::vector<Reading>& after, bool ranOutOfMemory) {
  auto find = [](const std::vector<Reading>& readings, const std::string& label) {
    return std::find_if(readings.begin(), readings.end(),
                        [&label](const Reading& reading) { return reading.label == label; });
  };
  for (const Reading& old : before) {
    const auto now = find(after, old.label);
    if (now == after.end()) {
      if (ranOutOfMemory) continue;
      return old.label + " read " + showReading(old) + " before the call and is gone after it";
    }
    if (old.error == vb_error::kOutOfMemory || now->error == vb_error::kOutOfMemory) continue;
    if (old.error != now->error || !sameValue(old.value, now->value)) {
      return old.label + " was " + showReading(old) + ", is " + showReading(*now);
    }
    if (auto inner = firstDifference(old.inner, now->inner, ranOutOfMemory)) {
      return old.label + " made an object whose " + *inner;
    }
  }
  for (const Reading& now : after) {
    if (!ranOutOfMemory && find(before, now.label) == before.end()) {
      return now.label + " reads " + showReading(now) + " after the call and did not before it";
    }
  }
  return std::nullopt;
}

// ---------------------------------------------------------------------------------------------
// Generated values.

std::vector<const ClassInfo*> creatableClasses;

struct Input {
  explicit Input(FuzzedDataProvider& provider) : data(provider) {}

  FuzzedDataProvider& data;
  const ClassInfo* targetClass = nullptr;
  ObjectRef target;
  // The target's snapshot as it stands, when one has been taken since its last change.
  std::optional<Snapshot> current;
  // Objects that calls returned and no one else holds, to pass back once.
  std::vector<ObjectRef> spares;
  int helpers = 0;
  // Whether the argument being made may be an object, and whether it may be the target.
  bool objectsAllowed = true;
  bool targetAllowed = false;
};

int32_t edgeLong(FuzzedDataProvider& data) {
  static constexpr int32_t kEdges[] = {
      0,     1,     -1,      2,       3,       7,        8,         15,        16,
      17,    31,    32,      100,     255,     256,      32767,     -32768,    32768,
      65535, 65536, 4194303, 4194304, 4194305, 16777216, INT32_MAX, INT32_MIN, INT32_MIN + 1};
  return data.ConsumeBool() ? data.PickValueInArray(kEdges) : data.ConsumeIntegral<int32_t>();
}

double edgeDouble(FuzzedDataProvider& data) {
  static constexpr double kEdges[] = {0.0,
                                      -0.0,
                                      0.5,
                                      -0.5,
                                      1.5,
                                      2.5,
                                      -2.5,
                                      0.1,
                                      1e15,
                                      1e308,
                                      -1e308,
                                      DBL_MIN,
                                      std::numeric_limits<double>::denorm_min(),
                                      std::numeric_limits<double>::quiet_NaN(),
                                      std::numeric_limits<double>::infinity(),
                                      -std::numeric_limits<double>::infinity(),
                                      32767.5,
                                      -32768.5,
                                      2147483647.5,
                                      -2147483648.5,
                                      922337203685477.5807,
                                      9.2233720368547758e18,
                                      3.4028235e38,
                                      2958465.99999,
                                      -657434.0};
  switch (data.ConsumeIntegralInRange(0, 2)) {
    case 0:
      return data.PickValueInArray(kEdges);
    case 1:
      return data.ConsumeFloatingPoint<double>();
    default:
      return static_cast<double>(edgeLong(data)) / (data.ConsumeBool() ? 1.0 : 100.0);
  }
}

String text(FuzzedDataProvider& data) {
  static const StringView kKeys[] = {u"",  u"a", u"A",  u"b", u"key",
                                     u"1", u"0", u"-1", u" ", u"Key1"};
  static const StringView kNumbers[] = {u"12",    u"-1.5",   u"1,5", u"1e308",    u"&HFFFF",
                                        u"&O17",  u"  42  ", u"NaN", u"1.#INF",   u"2147483648",
                                        u"$1.00", u"(3)",    u"1d2", u"#,##0.00", u"@@@@",
                                        u"!@@",   u"999.99", u"0%",  u"\\",       u"\u0663"};
  static const StringView kDates[] = {u"2024-02-29", u"31/12/9999", u"1/1/100",     u"12:00",
                                      u"99991231",   u"0/0/0",      u"Feb 30 2024", u"1/1/10000"};
  switch (data.ConsumeIntegralInRange(0, 5)) {
    case 0:
      return String(data.PickValueInArray(kKeys));
    case 1:
      return String(data.PickValueInArray(kNumbers));
    case 2:
      return String(data.PickValueInArray(kDates));
    case 3: {
      // Bytes as Latin-1 units.
      const std::vector<uint8_t> bytes =
          data.ConsumeBytes<uint8_t>(data.ConsumeIntegralInRange<std::size_t>(0, kMaxBytesText));
      return String(bytes.begin(), bytes.end());
    }
    case 4: {
      // Byte pairs as UTF-16 units: NULs, lone surrogates, anything.
      String units;
      const std::size_t count = data.ConsumeIntegralInRange<std::size_t>(0, kMaxBytesText);
      for (std::size_t i = 0; i < count && data.remaining_bytes() > 0; ++i) {
        units += static_cast<char16_t>(data.ConsumeIntegral<uint16_t>());
      }
      return units;
    }
    default: {
      // A long text: a short pattern repeated.
      static constexpr std::size_t kLengths[] = {255, 256, 257, 1023, 1024, 4095, 4096};
      const std::size_t length = data.ConsumeBool()
                                     ? data.PickValueInArray(kLengths)
                                     : data.ConsumeIntegralInRange<std::size_t>(0, kMaxTextUnits);
      String pattern(data.PickValueInArray(kKeys));
      if (pattern.empty()) pattern = u"x";
      String units;
      while (units.size() < length)
        units += pattern;
      units.resize(length);
      return units;
    }
  }
}

ObjectRef newObject(const ClassInfo& info, const std::string& name) {
  ObjectRef object = info.create();
  nameObject(object, name + " (" + toUtf8(info.name()) + ")");
  return object;
}

Variant typedValue(Input& in, VarType type, StringView typeName);
Variant anyValue(Input& in, int depth);

// Makes a call whose outcome does not matter, but which must not throw anything but a library
// error or bad_alloc.
Variant callUnchecked(const ObjectRef& object, StringView name, MemberKind kind,
                      std::vector<CallArgument>& arguments) {
  const std::string line = showCall(object.get(), name, kind, arguments);
  note(line);
  try {
    Variant result = callMember(object, name, kind, arguments);
    note("  -> " + show(result));
    return result;
  } catch (const AutomationError& error) {
    note("  -> raised " + std::to_string(error.number()));
  } catch (const std::bad_alloc&) {
    note("  -> out of memory");
  } catch (const std::exception& error) {
    finding(line + " threw " + error.what() + " (not a library error)");
  } catch (...) {
    finding(line + " threw a non-standard exception");
  }
  return Variant();
}

bool fillsObject(const MemberInfo& member) {
  return member.kind == MemberKind::PropertyLet || member.kind == MemberKind::PropertySet ||
         startsWithAny(member.name, {u"add", u"set", u"init"});
}

// A member that puts values into an object, if the class has any.
const MemberInfo* fillingMember(Input& in, const ClassInfo& info) {
  std::vector<const MemberInfo*> filling;
  for (const MemberInfo& member : info.members()) {
    if (fillsObject(member)) filling.push_back(&member);
  }
  if (filling.empty()) return nullptr;
  return filling[in.data.ConsumeIntegralInRange<std::size_t>(0, filling.size() - 1)];
}

// A new object of the class, filled with a few values (no objects) by well-formed calls.
ObjectRef helperObject(Input& in, const ClassInfo& info) {
  if (in.helpers >= kMaxHelpersPerInput) return nullptr;
  ++in.helpers;
  ObjectRef helper = newObject(info, "obj" + std::to_string(in.helpers));
  note("Set " + showObject(helper.get()) + " = new " + toUtf8(info.name()));
  const bool objectsAllowed = in.objectsAllowed;
  in.objectsAllowed = false;
  const int calls = in.data.ConsumeIntegralInRange(0, kMaxHelperFillingCalls);
  for (int i = 0; i < calls; ++i) {
    const MemberInfo* member = fillingMember(in, info);
    if (member == nullptr) break;
    std::vector<CallArgument> arguments;
    for (const ParameterInfo& parameter : member->parameters) {
      arguments.emplace_back(typedValue(in, parameter.type, parameter.typeName));
    }
    callUnchecked(helper, member->name, member->kind, arguments);
  }
  in.objectsAllowed = objectsAllowed;
  return helper;
}

// An object argument: Nothing, a new object, an object a call returned, or the target where the
// member is a copy member. `className` is the parameter's declared class, if any.
Variant objectValue(Input& in, StringView className) {
  if (!in.objectsAllowed) return Variant::nothing();
  ObjectRef chosen;
  switch (in.data.ConsumeIntegralInRange(0, 5)) {
    case 0:
      return Variant::nothing();
    case 1: {
      const ClassInfo* declared = libraryRegistry().findClass(className);
      chosen = helperObject(in, declared && declared->creatable() ? *declared : *in.targetClass);
      break;
    }
    case 2:
      chosen = helperObject(in, *creatableClasses[in.data.ConsumeIntegralInRange<std::size_t>(
                                    0, creatableClasses.size() - 1)]);
      break;
    case 3:
      if (!in.spares.empty()) {
        chosen = std::move(in.spares.back());
        in.spares.pop_back();
        break;
      }
      [[fallthrough]];
    case 4:
      if (in.targetAllowed) {
        chosen = in.target;
        break;
      }
      [[fallthrough]];
    default:
      chosen = helperObject(in, *in.targetClass);
      break;
  }
  return Variant(std::move(chosen));
}

Variant recordValue(Input& in, StringView typeName, int depth) {
  int kind = in.data.ConsumeIntegralInRange(0, 3);
  if (typeName == u"udtStringLong") kind = 0;
  if (typeName == u"udtVariObject") kind = 1;
  if (typeName == u"udtKeyValuePair") kind = 2;
  switch (kind) {
    case 0:
      return Variant(toRecord(udtStringLong{text(in.data), edgeLong(in.data)}));
    case 1: {
      udtVariObject value;
      value.eVntValueType = static_cast<VarType>(in.data.ConsumeIntegral<uint16_t>() % 40);
      value.vntValue = anyValue(in, depth + 1);
      Variant object = objectValue(in, u"");
      value.oValue = object.isObject() ? object.asObject() : nullptr;
      return Variant(toRecord(value));
    }
    case 2:
      return Variant(toRecord(udtKeyValuePair{text(in.data), anyValue(in, depth + 1)}));
    default: {
      // A record the members do not expect: another type name, fields missing or foreign.
      static const StringView kTypeNames[] = {u"udtStringLong", u"udtVariObject",
                                              u"udtKeyValuePair", u"", u"udtOther"};
      static const StringView kFieldNames[] = {u"sValue", u"lValue",        u"vntValue", u"oValue",
                                               u"sKey",   u"eVntValueType", u"",         u"x"};
      Record record;
      record.typeName = String(in.data.PickValueInArray(kTypeNames));
      const int fields = in.data.ConsumeIntegralInRange(0, 4);
      for (int i = 0; i < fields; ++i) {
        record.fields.emplace_back(String(in.data.PickValueInArray(kFieldNames)),
                                   anyValue(in, depth + 1));
      }
      return Variant(std::move(record));
    }
  }
}

Variant arrayValue(Input& in, int depth) {
  static constexpr VarType kElementTypes[] = {VarType::Variant, VarType::Long,   VarType::String,
                                              VarType::Double,  VarType::Object, VarType::Integer,
                                              VarType::Boolean, VarType::Byte};
  static constexpr int32_t kLowerBounds[] = {0, 1, -1, -5, 1000};
  SafeArray array;
  array.elementType = in.data.PickValueInArray(kElementTypes);
  const int dimensions = in.data.ConsumeIntegralInRange(1, 2);
  std::size_t elements = 1;
  for (int i = 0; i < dimensions; ++i) {
    SafeArray::Bound bound;
    bound.lower = in.data.PickValueInArray(kLowerBounds);
    bound.count = in.data.ConsumeIntegralInRange(0, kMaxGeneratedElements / dimensions);
    elements *= static_cast<std::size_t>(bound.count);
    array.bounds.push_back(bound);
  }
  for (std::size_t i = 0; i < elements; ++i) {
    array.elements.push_back(array.elementType == VarType::Variant
                                 ? anyValue(in, depth + 1)
                                 : typedValue(in, array.elementType, u""));
  }
  return Variant(std::move(array));
}

// Any value at all.
Variant anyValue(Input& in, int depth) {
  FuzzedDataProvider& data = in.data;
  switch (data.ConsumeIntegralInRange(0, 16)) {
    case 0:
      return Variant();
    case 1:
      return Variant::null();
    case 2:
      return Variant(static_cast<int16_t>(edgeLong(data)));
    case 3:
      return Variant(edgeLong(data));
    case 4:
      return Variant(static_cast<float>(edgeDouble(data)));
    case 5:
      return Variant(edgeDouble(data));
    case 6:
      return Variant(data.ConsumeBool() ? Currency::fromScaled(data.ConsumeIntegral<int64_t>())
                                        : Currency::fromScaled(int64_t{edgeLong(data)} * 10000));
    case 7:
      return Variant(Date{edgeDouble(data)});
    case 8:
    case 9:
      return Variant(text(data));
    case 10:
      return Variant(data.ConsumeBool());
    case 11:
      return Variant(data.ConsumeIntegral<uint8_t>());
    case 12:
      return data.ConsumeBool() ? Variant::missing()
                                : Variant(Variant::ErrorValue{data.ConsumeIntegral<int32_t>()});
    case 13:
      return objectValue(in, u"");
    case 14:
      if (depth < kMaxValueDepth) return recordValue(in, u"", depth);
      return Variant();
    case 15:
      if (depth < kMaxValueDepth) return arrayValue(in, depth);
      return Variant();
    default:
      return Variant(static_cast<int32_t>(data.ConsumeIntegralInRange(0, 10)));
  }
}

// A value that fits a parameter of the declared type: small numbers (indices, counts), short
// texts and keys, mostly; now and then an edge value of the type.
Variant typedValue(Input& in, VarType type, StringView typeName) {
  FuzzedDataProvider& data = in.data;
  const bool edge = data.ConsumeIntegralInRange(0, 7) == 0;
  const int32_t small = edge ? edgeLong(data) : data.ConsumeIntegralInRange(-1, 10);
  switch (type) {
    case VarType::Integer:
      return Variant(static_cast<int16_t>(small));
    case VarType::Long:
      return Variant(small);
    case VarType::Byte:
      return Variant(static_cast<uint8_t>(small));
    case VarType::Boolean:
      return Variant(data.ConsumeBool());
    case VarType::Single:
      return Variant(static_cast<float>(edge ? edgeDouble(data) : small / 4.0));
    case VarType::Double:
      return Variant(edge ? edgeDouble(data) : small / 4.0);
    case VarType::Currency:
      return Variant(Currency::fromScaled(int64_t{small} * 2500));
    case VarType::Date:
      return Variant(Date{edge ? edgeDouble(data) : 45000.0 + small * 40.25});
    case VarType::String:
      return Variant(text(data));
    case VarType::Object:
      return objectValue(in, typeName);
    case VarType::Record:
      return recordValue(in, typeName, 0);
    default: {
      const bool objectsAllowed = in.objectsAllowed;
      in.objectsAllowed = objectsAllowed && data.ConsumeBool();
      Variant value = anyValue(in, 0);
      in.objectsAllowed = objectsAllowed;
      return value;
    }
  }
}

// ---------------------------------------------------------------------------------------------
// The calls.

String upperAscii(StringView name, bool upper) {
  String changed(name);
  for (char16_t& unit : changed) {
    if (upper && unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - 32);
    if (!upper && unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit + 32);
  }
  return changed;
}

// The objects among the arguments, other than the target, each once.
std::vector<ObjectRef> objectArguments(const Input& in, std::span<const CallArgument> arguments) {
  std::vector<ObjectRef> objects;
  for (const CallArgument& argument : arguments) {
    if (!argument.value.isObject() || !argument.value.asObject()) continue;
    const ObjectRef& object = argument.value.asObject();
    if (object == in.target || std::find(objects.begin(), objects.end(), object) != objects.end()) {
      continue;
    }
    objects.push_back(object);
  }
  return objects;
}

// Calls a member of the target; when the call fails, checks that neither the target nor the
// objects passed to it changed, nor, when it raised, the caller's by-reference variables.
void callChecked(Input& in, StringView name, MemberKind kind, std::vector<CallArgument>& arguments,
                 const std::deque<Variant>& variables, const char* phase) {
  const std::string call = showCall(in.target.get(), name, kind, arguments);
  if (!in.current) in.current = snapshotOf(*in.target, 0);
  std::vector<std::pair<ObjectRef, Snapshot>> passed;
  for (ObjectRef& object : objectArguments(in, arguments)) {
    Snapshot state = snapshotOf(*object, 0);
    passed.emplace_back(std::move(object), std::move(state));
  }
  const std::vector<Variant> variablesBefore(variables.begin(), variables.end());

  note(std::string(phase) + call);
  int32_t raised = 0;
  Variant result;
  try {
    result = callMember(in.target, name, kind, arguments);
  } catch (const AutomationError& error) {
    raised = error.number();
    if (raised == 0) finding(call + " raised an error numbered 0");
  } catch (const std::bad_alloc&) {
    raised = vb_error::kOutOfMemory;
  } catch (const std::exception& error) {
    finding(call + " threw " + error.what() + " (not a library error)");
  } catch (...) {
    finding(call + " threw a non-standard exception");
  }

  const bool refused = raised == 0 && result.type() == VarType::Boolean && !result.asBoolean() &&
                       startsWithAny(name, {u"add", u"remove", u"set"});
  if (raised == 0 && !refused) {
    note("  -> " + show(result));
    in.current.reset();
    if (result.isObject() && result.asObject() && result.asObject().use_count() == 1 &&
        in.spares.size() < kMaxSpares) {
      ObjectRef made = result.asObject();
      nameObject(made,
                 "made" + std::to_string(trace.size()) + " (" + toUtf8(made->className()) + ")");
      in.spares.push_back(std::move(made));
    }
    return;
  }

  const std::string failed = refused ? "answered False" : "raised " + std::to_string(raised);
  note("  -> " + failed);
  Snapshot after = snapshotOf(*in.target, 0);
  const bool ranOutOfMemory = in.current->ranOutOfMemory || after.ranOutOfMemory;
  if (auto difference = firstDifference(in.current->readings, after.readings, ranOutOfMemory)) {
    finding(call + " " + failed + " but changed the target: " + *difference);
  }
  in.current = std::move(after);
  for (auto& [object, before] : passed) {
    Snapshot now = snapshotOf(*object, 0);
    if (auto difference = firstDifference(before.readings, now.readings,
                                          before.ranOutOfMemory || now.ranOutOfMemory)) {
      finding(call + " " + failed + " but changed its argument " + showObject(object.get()) + ": " +
              *difference);
    }
  }
  // A call that answers writes its by-reference arguments back, converted to their types.
  if (refused) return;
  for (std::size_t i = 0; i < variablesBefore.size(); ++i) {
    if (!sameValue(variablesBefore[i], variables[i])) {
      finding(call + " raised " + std::to_string(raised) +
              " but changed a by-reference variable from " + show(variablesBefore[i]) + " to " +
              show(variables[i]));
    }
  }
}

// One call of a member of the target by name. A filling call is well formed: a member that puts
// values in, its own name and kind, one fitting value per parameter. Any other call may misspell
// the name, use another kind, pass too few or too many arguments, omit, name or pass by reference
// any of them, and pass values of any type.
void makeCall(Input& in, bool filling) {
  FuzzedDataProvider& data = in.data;
  const auto& members = in.targetClass->members();
  if (members.empty()) return;
  const MemberInfo* member = filling ? fillingMember(in, *in.targetClass) : nullptr;
  if (member == nullptr) {
    if (filling) return;
    member = &members[data.ConsumeIntegralInRange<std::size_t>(0, members.size() - 1)];
  }

  String name = member->name;
  MemberKind kind = member->kind;
  if (!filling) {
    switch (data.ConsumeIntegralInRange(0, 15)) {
      case 12:
        name = upperAscii(name, true);
        break;
      case 13:
        name = upperAscii(name, false);
        break;
      case 14: {
        const ClassInfo& other = *creatableClasses[data.ConsumeIntegralInRange<std::size_t>(
            0, creatableClasses.size() - 1)];
        if (!other.members().empty()) {
          name = other
                     .members()[data.ConsumeIntegralInRange<std::size_t>(
                         0, other.members().size() - 1)]
                     .name;
        }
        break;
      }
      case 15:
        name = text(data);
        break;
      default:
        break;
    }
    if (data.ConsumeIntegralInRange(0, 7) == 0) {
      kind = static_cast<MemberKind>(data.ConsumeIntegralInRange(0, 3));
    }
  }

  const auto& parameters = member->parameters;
  const std::size_t required = static_cast<std::size_t>(
      std::count_if(parameters.begin(), parameters.end(),
                    [](const ParameterInfo& parameter) { return !parameter.optional; }));
  const bool wellFormed = filling || data.ConsumeBool();
  std::size_t count = parameters.size();
  if (wellFormed) {
    count = data.ConsumeIntegralInRange(required, parameters.size());
  } else {
    switch (data.ConsumeIntegralInRange(0, 3)) {
      case 0:
        break;
      case 1:
        count = required;
        break;
      case 2:
        count = data.ConsumeIntegralInRange<std::size_t>(0, parameters.size());
        break;
      default:
        count = parameters.size() + data.ConsumeIntegralInRange(1, kMaxSurplusArguments);
        break;
    }
  }

  in.targetAllowed = containsIgnoreCase(name, u"copy");
  std::vector<CallArgument> arguments;
  std::deque<Variant> variables;
  for (std::size_t i = 0; i < count; ++i) {
    const ParameterInfo* parameter = i < parameters.size() ? &parameters[i] : nullptr;
    const bool fitting =
        parameter != nullptr && (wellFormed || data.ConsumeIntegralInRange(0, 3) == 0);
    Variant value =
        fitting ? typedValue(in, parameter->type, parameter->typeName) : anyValue(in, 0);
    const bool byRef = parameter != nullptr && parameter->byRef;
    switch (wellFormed ? (byRef ? 4 : 0) : data.ConsumeIntegralInRange(0, 7)) {
      case 4:
        arguments.emplace_back(value, &variables.emplace_back(value));
        break;
      case 5:
        arguments.push_back(CallArgument::omittedArgument());
        break;
      case 6: {
        String argumentName = text(data);
        if (data.ConsumeBool() && !parameters.empty()) {
          argumentName =
              parameters[data.ConsumeIntegralInRange<std::size_t>(0, parameters.size() - 1)].name;
          argumentName = upperAscii(argumentName, data.ConsumeBool());
        }
        arguments.push_back(CallArgument::named(argumentName, std::move(value)));
        break;
      }
      case 7:
        arguments.emplace_back(Variant::missing());
        break;
      default:
        arguments.emplace_back(std::move(value));
        break;
    }
  }
  in.targetAllowed = false;
  callChecked(in, name, kind, arguments, variables, filling ? "fill: " : "");
}

void runInput(FuzzedDataProvider& data) {
  Input in(data);
  in.targetClass =
      creatableClasses[data.ConsumeIntegralInRange<std::size_t>(0, creatableClasses.size() - 1)];
  in.target = newObject(*in.targetClass, "target");
  note("Set target = new " + toUtf8(in.targetClass->name()));

  const int filling = data.ConsumeIntegralInRange(0, kMaxFillingCalls);
  for (int i = 0; i < filling; ++i)
    makeCall(in, true);

  // The reads must be reads: two snapshots in a row agree.
  if (!in.current) in.current = snapshotOf(*in.target, 0);
  if (auto difference = [&in] {
        const Snapshot again = snapshotOf(*in.target, 0);
        return firstDifference(in.current->readings, again.readings,
                               in.current->ranOutOfMemory || again.ranOutOfMemory);
      }()) {
    finding("reading the target twice gives different results: " + *difference);
  }

  const int calls = data.ConsumeIntegralInRange(0, kMaxCalls - filling);
  for (int i = 0; i < calls && data.remaining_bytes() > 0; ++i)
    makeCall(in, false);

  const std::weak_ptr<Object> watched = in.target;
  in.current.reset();
  in.spares.clear();
  in.target.reset();
  if (!watched.expired()) {
    finding(
        "the target outlives the input's last reference to it: something the calls made holds it");
  }
}

}  // namespace
}  // namespace ravelin::fuzzing

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  using namespace ravelin;
  fuzzing::tracing = std::getenv("RAVELIN_MEMBER_CALL_TRACE") != nullptr;
  fuzzing::withoutOdbcDrivers();
  for (const ClassInfo* info : libraryRegistry().classes()) {
    if (!info->creatable() || fuzzing::actsOnMachineFiles(*info)) continue;
    fuzzing::creatableClasses.push_back(info);
    const fuzzing::ClassReads& reads = fuzzing::readsOf(*info);
    std::vector<Variant> items;
    const bool enumerates = info->create()->enumerate(items);
    std::string names;
    for (const MemberInfo* member : reads.plain)
      names += " " + toUtf8(member->name) + "()";
    for (const MemberInfo* member : reads.indexed)
      names += " " + toUtf8(member->name) + "(i)";
    if (enumerates) names += " For-Each";
    std::fprintf(stderr, "INFO: %s is read by%s\n", toUtf8(info->name()).c_str(),
                 names.empty() ? " nothing" : names.c_str());
  }
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace ravelin::fuzzing;
  trace.clear();
  objectNames.clear();
  FuzzedDataProvider provider(data, size);
  if (tracing) std::fprintf(stderr, "input of %zu bytes:\n", size);
  runInput(provider);
  objectNames.clear();
  return 0;
}
