#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/records.hpp>

namespace ravelin {
namespace {

constexpr StringView kStringLong = u"udtStringLong";
constexpr StringView kVariObject = u"udtVariObject";
constexpr StringView kKeyValuePair = u"udtKeyValuePair";
constexpr StringView kFileVersion = u"FileVersion";
constexpr StringView kFileInfo = u"FileInfo";
constexpr StringView kFileArray = u"FileArray";

// The fields of FileInfo in order, with their declared types.
struct FileInfoField {
  StringView name;
  VarType type;
};
constexpr FileInfoField kFileInfoFields[] = {
    {u"Signature", VarType::Long},
    {u"StrucVersionl", VarType::Integer},
    {u"StrucVersionh", VarType::Integer},
    {u"FileVersionMSl", VarType::Integer},
    {u"FileVersionMSh", VarType::Integer},
    {u"FileVersionLSl", VarType::Integer},
    {u"FileVersionLSh", VarType::Integer},
    {u"ProductVersionMSl", VarType::Integer},
    {u"ProductVersionMSh", VarType::Integer},
    {u"ProductVersionLSl", VarType::Integer},
    {u"ProductVersionLSh", VarType::Integer},
    {u"FileFlagsMask", VarType::Long},
    {u"FileFlags", VarType::Long},
    {u"FileOS", VarType::Long},
    {u"FileType", VarType::Long},
    {u"FileSubtype", VarType::Long},
    {u"FileDateMS", VarType::Long},
    {u"FileDateLS", VarType::Long},
};

// The FileInfo fields as the struct holds them, in the order of kFileInfoFields.
template <class Info, class Visit>
void forEachFileInfoField(Info& info, Visit visit) {
  visit(info.Signature);
  visit(info.StrucVersionl), visit(info.StrucVersionh);
  visit(info.FileVersionMSl), visit(info.FileVersionMSh);
  visit(info.FileVersionLSl), visit(info.FileVersionLSh);
  visit(info.ProductVersionMSl), visit(info.ProductVersionMSh);
  visit(info.ProductVersionLSl), visit(info.ProductVersionLSh);
  visit(info.FileFlagsMask), visit(info.FileFlags), visit(info.FileOS), visit(info.FileType);
  visit(info.FileSubtype), visit(info.FileDateMS), visit(info.FileDateLS);
}

const Record& recordOfType(const Variant& value, StringView typeName) {
  if (!value.isRecord() || !equalsIgnoreCase(value.asRecord().typeName, typeName)) {
    raiseRuntimeError(vb_error::kTypeMismatch);
  }
  return value.asRecord();
}

const Variant& fieldOf(const Record& record, StringView name) {
  const Variant* field = record.field(name);
  if (field == nullptr) raiseRuntimeError(vb_error::kTypeMismatch);
  return *field;
}

ObjectRef objectOf(const Variant& value) {
  if (!value.isObject()) raiseRuntimeError(vb_error::kTypeMismatch);
  return value.asObject();
}

// The declared type of each field of the published records.
struct FieldType {
  StringView record;
  StringView field;
  VarType type;
};
constexpr FieldType kFieldTypes[] = {
    {kStringLong, u"sValue", VarType::String},      {kStringLong, u"lValue", VarType::Long},
    {kVariObject, u"eVntValueType", VarType::Long}, {kVariObject, u"vntValue", VarType::Variant},
    {kVariObject, u"oValue", VarType::Object},      {kKeyValuePair, u"sKey", VarType::String},
    {kKeyValuePair, u"vntValue", VarType::Variant}, {kFileVersion, u"Major", VarType::Integer},
    {kFileVersion, u"Minor", VarType::Integer},     {kFileVersion, u"Revision", VarType::Integer},
    {kFileArray, u"FileCount", VarType::Long},      {kFileArray, u"Filename", VarType::Array},
};

VarType declaredTypeOf(const Record& record, StringView field) {
  if (equalsIgnoreCase(record.typeName, kFileInfo)) {
    for (const auto& entry : kFileInfoFields) {
      if (equalsIgnoreCase(entry.name, field)) return entry.type;
    }
  }
  for (const auto& entry : kFieldTypes) {
    if (equalsIgnoreCase(entry.record, record.typeName) && equalsIgnoreCase(entry.field, field)) {
      return entry.type;
    }
  }
  return VarType::Variant;
}

}  // namespace

void assignRecordField(Record& record, StringView field, Variant value) {
  Variant* target = record.field(field);
  if (target == nullptr) raiseRuntimeError(vb_error::kMemberNotSupported);
  switch (declaredTypeOf(record, field)) {
    case VarType::String:
      *target = CStr(value);
      break;
    case VarType::Integer:
      *target = CInt(value);
      break;
    case VarType::Long:
      *target = CLng(value);
      break;
    case VarType::Array:
      if (!value.isArray()) raiseRuntimeError(vb_error::kTypeMismatch);
      *target = std::move(value);
      break;
    case VarType::Object:
      *target = objectOf(value);
      break;
    default:
      *target = std::move(value);
  }
}

Record toRecord(const udtStringLong& value) {
  return Record{String(kStringLong), {{u"sValue", value.sValue}, {u"lValue", value.lValue}}};
}

Record toRecord(const udtVariObject& value) {
  return Record{String(kVariObject),
                {{u"eVntValueType", static_cast<int32_t>(value.eVntValueType)},
                 {u"vntValue", value.vntValue},
                 {u"oValue", value.oValue}}};
}

Record toRecord(const udtKeyValuePair& value) {
  return Record{String(kKeyValuePair), {{u"sKey", value.sKey}, {u"vntValue", value.vntValue}}};
}

udtStringLong udtStringLongFrom(const Variant& value) {
  const Record& record = recordOfType(value, kStringLong);
  return {CStr(fieldOf(record, u"sValue")), CLng(fieldOf(record, u"lValue"))};
}

udtVariObject udtVariObjectFrom(const Variant& value) {
  const Record& record = recordOfType(value, kVariObject);
  return {static_cast<VarType>(CLng(fieldOf(record, u"eVntValueType"))),
          fieldOf(record, u"vntValue"), objectOf(fieldOf(record, u"oValue"))};
}

udtKeyValuePair udtKeyValuePairFrom(const Variant& value) {
  const Record& record = recordOfType(value, kKeyValuePair);
  return {CStr(fieldOf(record, u"sKey")), fieldOf(record, u"vntValue")};
}

Record toRecord(const FileVersion& value) {
  return Record{String(kFileVersion),
                {{u"Major", value.Major}, {u"Minor", value.Minor}, {u"Revision", value.Revision}}};
}

Record toRecord(const FileInfo& value) {
  Record record{String(kFileInfo), {}};
  std::size_t index = 0;
  forEachFileInfoField(value, [&](const auto& field) {
    record.fields.emplace_back(String(kFileInfoFields[index++].name), Variant(field));
  });
  return record;
}

Record toRecord(const FileArray& value) {
  SafeArray names =
      SafeArray::vector(VarType::String, 0, static_cast<int32_t>(value.Filename.size()) - 1);
  for (std::size_t i = 0; i < value.Filename.size(); ++i)
    names.elements[i] = value.Filename[i];
  return Record{String(kFileArray),
                {{u"FileCount", value.FileCount}, {u"Filename", Variant(std::move(names))}}};
}

FileVersion FileVersionFrom(const Variant& value) {
  const Record& record = recordOfType(value, kFileVersion);
  return {CInt(fieldOf(record, u"Major")), CInt(fieldOf(record, u"Minor")),
          CInt(fieldOf(record, u"Revision"))};
}

FileInfo FileInfoFrom(const Variant& value) {
  const Record& record = recordOfType(value, kFileInfo);
  FileInfo info;
  std::size_t index = 0;
  forEachFileInfoField(info, [&](auto& field) {
    const Variant& stored = fieldOf(record, kFileInfoFields[index++].name);
    if constexpr (sizeof(field) == 2) {
      field = CInt(stored);
    } else {
      field = CLng(stored);
    }
  });
  return info;
}

FileArray FileArrayFrom(const Variant& value) {
  const Record& record = recordOfType(value, kFileArray);
  FileArray files;
  files.FileCount = CLng(fieldOf(record, u"FileCount"));
  const Variant& names = fieldOf(record, u"Filename");
  if (names.isArray()) {
    for (const Variant& name : names.asArray().elements)
      files.Filename.push_back(CStr(name));
  } else if (!names.isEmpty()) {
    raiseRuntimeError(vb_error::kTypeMismatch);
  }
  return files;
}

}  // namespace ravelin
