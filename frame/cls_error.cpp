#include <charconv>
#include <iterator>
#include <ravelin/frame/cls_error.hpp>

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

}  // namespace ravelin
