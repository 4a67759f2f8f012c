#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/fields.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>

namespace ravelin {

// ---- Field ----------------------------------------------------------------------------------

Field::Field(std::shared_ptr<RecordStore> store, std::size_t index)
    : store_(std::move(store)), index_(index) {}

std::size_t Field::position() const {
  if (index_ >= store_->fieldCount()) raiseAdoError(ado_error::kObjectNoLongerValid, kFieldSource);
  return index_;
}

Variant Field::Value() const {
  return store_->value(position());
}

void Field::setValue(const Variant& value) {
  store_->setValue(position(), value);
}

Variant Field::OriginalValue() const {
  return store_->originalValue(position());
}

ClassInfo Field::describe() {
  return ClassBuilder<Field>(kClassName, false)
      .get(u"Name", &Field::Name)
      .get(u"Type", &Field::Type)
      .get(u"DefinedSize", &Field::DefinedSize)
      .get(u"Attributes", &Field::Attributes)
      .get(u"Precision", &Field::Precision)
      .get(u"NumericScale", &Field::NumericScale)
      .get(u"Value", &Field::Value)
      .let(u"Value", &Field::setValue)
      .get(u"OriginalValue", &Field::OriginalValue)
      // Value is the default member: WScript.Echo rs("Name"), rs("Name") = "x".
      .get(u"", &Field::Value)
      .let(u"", &Field::setValue)
      .build();
}

// ---- Fields ---------------------------------------------------------------------------------

Fields::Fields(std::shared_ptr<RecordStore> store) : store_(std::move(store)) {}

std::shared_ptr<Field> Fields::Item(const Variant& index) const {
  if (index.isString()) {
    if (auto found = store_->findField(index.asString())) return fields_[*found];
  } else if (index.isNumber() || index.type() == VarType::Boolean) {
    double position = 0;
    try {
      position = CDbl(index);
    } catch (const AutomationError&) {
      raiseAdoError(ado_error::kItemNotFound, kRecordsetSource);
    }
    if (position >= 0 && position < static_cast<double>(fields_.size()))
      return fields_[static_cast<std::size_t>(position)];
  }
  raiseAdoError(ado_error::kItemNotFound, kRecordsetSource);
}

void Fields::Append(StringView name, int32_t type, int32_t definedSize, int32_t attributes) {
  store_->appendField(name, type, definedSize, attributes);
  fields_.push_back(makeObject<Field>(store_, fields_.size()));
}

void Fields::refresh() {
  fields_.clear();
  for (std::size_t i = 0; i < store_->fieldCount(); ++i)
    fields_.push_back(makeObject<Field>(store_, i));
}

bool Fields::enumerate(std::vector<Variant>& items) const {
  items.reserve(fields_.size());
  for (const std::shared_ptr<Field>& field : fields_)
    items.emplace_back(field);
  return true;
}

ClassInfo Fields::describe() {
  const auto assignItem = [](Fields& self, const Variant& index, const Variant& value) {
    self.Item(index)->setValue(value);
  };
  return ClassBuilder<Fields>(kClassName, false)
      .get(u"Count", &Fields::Count)
      .get(u"Item", &Fields::Item, {u"Index"})
      .get(u"", &Fields::Item, {u"Index"})
      // Fields("Name") = value and Fields.Item("Name") = value assign the field's Value.
      .let(u"", assignItem, {u"Index"})
      .let(u"Item", assignItem, {u"Index"})
      .method(u"Append",
              [](Fields& self, const String& name, int32_t type, int32_t definedSize,
                 int32_t attributes, const Variant& fieldValue) {
                (void)fieldValue;  // a value for the new field has no meaning before Open
                self.Append(name, type, definedSize, attributes);
              },
              {u"Name", u"Type", optional(u"DefinedSize", Variant(int32_t{0})),
               optional(u"Attrib", Variant(int32_t{adFldUnspecified})), optional(u"FieldValue")})
      .build();
}

}  // namespace ravelin
