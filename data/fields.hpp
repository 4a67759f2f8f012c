// Field and Fields: the columns of a record set as the data-access objects publish them. A Field
// reads and writes its column in the current record of its record set; Fields is the ordered
// collection of a record set's fields, by position (from 0) or by name without regard to case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <ravelin/data/ado_enums.hpp>
#include <ravelin/data/record_store.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>
#include <vector>

namespace ravelin {

class Field : public PublicClass<Field> {
 public:
  static constexpr StringView kClassName = u"Field";

  Field(std::shared_ptr<RecordStore> store, std::size_t index);
  static ClassInfo describe();

  const String& Name() const { return definition().name; }
  int32_t Type() const { return definition().type; }
  int32_t DefinedSize() const { return definition().definedSize; }
  int32_t Attributes() const { return definition().attributes; }
  // Digits and digits after the point of a numeric field from a database (0 otherwise).
  uint8_t Precision() const { return definition().precision; }
  uint8_t NumericScale() const { return definition().numericScale; }

  // The value in the current record: Null while unset. Errors: 3704 when the set is closed,
  // 3021 without a current record (at BOF or EOF, or on a deleted row).
  Variant Value() const;
  // Assigns the value converted to the field's type (field_types.hpp for the conversions and
  // their error); on a committed row the assignment starts an edit that Update (or a move)
  // completes. 3251 on a read-only set.
  void setValue(const Variant& value);
  // The value as last committed (field_types.hpp): what a modified row held before its change.
  Variant OriginalValue() const;

  std::size_t index() const { return index_; }

 private:
  // The field's position, checked: a Field kept from before its record set was opened from a
  // file with fewer fields raises 3420.
  std::size_t position() const;
  const FieldDefinition& definition() const { return store_->field(position()); }

  std::shared_ptr<RecordStore> store_;
  std::size_t index_;
};

class Fields : public PublicClass<Fields> {
 public:
  static constexpr StringView kClassName = u"Fields";

  explicit Fields(std::shared_ptr<RecordStore> store);
  static ClassInfo describe();

  int32_t Count() const { return static_cast<int32_t>(fields_.size()); }
  // The field at a position from 0 (any number) or of a name (text, any case); 3265 when there
  // is none.
  std::shared_ptr<Field> Item(const Variant& index) const;
  // Appends a field while the record set is closed (3219 when open, 3367 for a name already
  // there, 3001 for a refused type or size). A DefinedSize of 0 takes the type's width; the
  // attributes adFldUnspecified take those the type implies (field_types.hpp).
  void Append(StringView name, int32_t type, int32_t definedSize = 0,
              int32_t attributes = adFldUnspecified);

  // For Each gives the fields in order.
  bool enumerate(std::vector<Variant>& items) const override;

  // Makes the Field objects anew after the record set's fields were replaced (opened from a
  // file); a Field kept from before reads the field now at its position, if any.
  void refresh();

 private:
  std::shared_ptr<RecordStore> store_;
  std::vector<std::shared_ptr<Field>> fields_;
};

}  // namespace ravelin
