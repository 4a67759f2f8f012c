// The field types a record set takes: how each is stored, its default size and attributes, and
// the conversion of an assigned value to it.
#pragma once

#include <cstdint>
#include <optional>
#include <ravelin/data/ado_enums.hpp>
#include <ravelin/data/record_column.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin {

// A field as appended: name, type, size and attributes, and the storage its type gets.
struct FieldDefinition {
  String name;
  DataTypeEnum type = adEmpty;
  int32_t definedSize = 0;
  int32_t attributes = 0;
  CellKind kind = CellKind::Variant;
  // Where a database gave the field's values: its table and column there, which a batch update
  // through a connection writes to. Empty for a fabricated field.
  String baseTable;
  String baseColumn;
  // A numeric field's digits and digits after the point, as the database gave them.
  uint8_t precision = 0;
  uint8_t numericScale = 0;
};

// The storage of a field type; none for the types a record set refuses (adEmpty, adIDispatch,
// adIUnknown, adVariant, adUserDefined, adChapter, adPropVariant, any array and any number
// that is no DataTypeEnum value).
std::optional<CellKind> cellKindOf(int32_t type);

// Whether the type is one of the text types (adBSTR, adChar, adWChar, adVarChar, adVarWChar,
// adLongVarChar, adLongVarWChar, adGUID).
bool isTextType(int32_t type);

// The definition of an appended field, with a zero DefinedSize replaced by the type's width and
// adFldUnspecified replaced by the attributes the type implies (updatable, plus fixed for the
// fixed-width types; not nullable). Raises 3001 for a refused type or a negative size.
FieldDefinition defineField(StringView name, int32_t type, int32_t definedSize, int32_t attributes);

// The value assigned to a field converted to the field's type by the automation conversions.
// Null (and Empty) are kept as Null when the attributes include adFldIsNullable or
// adFldMayBeNull. A value that cannot be converted (a conversion error, an overflow, an object),
// Null for a field that takes none, and a text longer than a limited text field's DefinedSize
// raise 0x80040E21 "Multiple-step operation generated errors. Check each status value." from
// the cursor engine. A text of the fixed-length types adChar and adWChar is padded with blanks
// to DefinedSize.
Variant convertForField(const FieldDefinition& field, const Variant& value);

}  // namespace ravelin
