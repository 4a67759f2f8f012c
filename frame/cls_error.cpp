#include <charconv>
#include <iterator>
#include <ravelin/frame/cls_error.hpp>

#include <ravelin/frame/class_builder.hpp>

namespace ravelin {

void clsError::init(int32_t vlCode, StringView vsSource, StringView vsDescription) {
  setCode(vlCode);
  setSource(vsSource);
  setDescription(vsDescription);
}

String clsError::CompleteErrorDescription() const {
  char digits[16];
  const auto end = std::to_chars(std::begin(digits), std::end(digits), code_).ptr;

  String line;
  line.reserve(static_cast<std::size_t>(end - digits) + description_.size() + source_.size() + 5);
  line.append(digits, end);
  line += u'-';
  line += description_;
  line += u"\r\n<";
  line += source_;
  line += u'>';
  return line;
}

ClassInfo clsError::describe() {
  return ClassBuilder<clsError>(kClassName)
      .method(u"init", &clsError::init, {u"vlCode", u"vsSource", u"vsDescription"})
      .get(u"CompleteErrorDescription", &clsError::CompleteErrorDescription)
      .method(u"getCode", &clsError::getCode)
      .method(u"getSource", &clsError::getSource)
      .method(u"getDescription", &clsError::getDescription)
      .build();
}

}  // namespace ravelin
