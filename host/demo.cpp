// ravelin-demo: a tour of the value arrays and clsError, then the suite's real work: a dBASE
// table imported into an SQLite database (demo_import.cpp). Printed as UTF-8; the output does
// not depend on the machine (the program sets the en-US locale before it converts anything),
// except for the progress a terminal is shown. `ravelin-demo N` imports N records (200000).
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <ravelin/containers/cls_array_boolean.hpp>
#include <ravelin/containers/cls_array_double.hpp>
#include <ravelin/containers/cls_array_integer.hpp>
#include <ravelin/containers/cls_array_long.hpp>
#include <ravelin/containers/cls_array_single.hpp>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/frame/cls_error.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <string>
#include <string_view>

#include "demo_import.hpp"

namespace {

using ravelin::String;
using ravelin::toUtf8;

void heading(std::string_view title) {
  std::cout << '\n' << title << '\n';
}

void showText(std::string_view label, const String& text) {
  std::cout << "  " << label << ": " << toUtf8(text) << '\n';
}

void showNumber(std::string_view label, long long number) {
  std::cout << "  " << label << ": " << number << '\n';
}

void showFlag(std::string_view label, bool flag) {
  std::cout << "  " << label << ": " << (flag ? "True" : "False") << '\n';
}

// Prints CompleteErrorDescription, whose CR LF line break becomes two output lines.
void showComplete(std::string_view indent, std::string_view label, const ravelin::clsError& error) {
  const String complete = error.CompleteErrorDescription();
  const auto lineBreak = complete.find(u"\r\n");
  std::cout << indent << label << '\n'
            << indent << "  " << toUtf8(complete.substr(0, lineBreak)) << '\n'
            << indent << "  " << toUtf8(complete.substr(lineBreak + 2)) << '\n';
}

// Runs an action that raises, and prints the error as a caller sees it.
template <typename Action>
void showError(std::string_view label, Action action) {
  try {
    action();
    std::cout << "  " << label << ": no error\n";
  } catch (const ravelin::AutomationError& error) {
    ravelin::clsError held;
    held.init(error.number(), error.source(), error.description());
    std::cout << "  " << label << " raises\n"
              << "    number      " << held.getCode() << '\n'
              << "    source      " << toUtf8(held.getSource()) << '\n'
              << "    description " << toUtf8(held.getDescription()) << '\n';
    showComplete("    ", "CompleteErrorDescription", held);
  }
}

void longs() {
  heading("clsArrayLong");
  ravelin::clsArrayLong array;
  for (const int32_t value : {10, 20, 30, -2147483647 - 1}) {
    showNumber("add(" + std::to_string(value) + ") gives index", array.add(value));
  }
  showText("getItemsAsList", array.getItemsAsList());
  showFlag("removeItem(0)", array.removeItem(0));
  showText("getItemsAsList", array.getItemsAsList());
  showFlag("removeItem(7)", array.removeItem(7));
  showFlag("removeLastItem", array.removeLastItem());
  showNumber("getCount", array.getCount());
  showError("item(5)", [&] { (void)array.item(5); });
  showError("IObject_generateCopy", [&] { (void)array.IObject_generateCopy(); });

  ravelin::clsArrayLong full;
  int16_t last = 0;
  for (int i = 0; i < 32767; ++i)
    last = full.add(i);
  showNumber("after 32767 adds, the last index", last);
  showNumber("the 32768th add", full.add(32767));
}

void doubles() {
  heading("clsArrayDouble");
  ravelin::clsArrayDouble array;
  for (const double value : {1.5, 2.0, -0.125, 1.0 / 3.0, 1e15, 2.5e-7})
    array.add(value);
  showText("getItemsAsList", array.getItemsAsList());
  ravelin::Locale decimalComma = ravelin::currentLocale();
  decimalComma.decimalSeparator = u",";
  decimalComma.thousandsSeparator = u".";
  ravelin::ScopedLocale scope(decimalComma);
  showText("the same with a decimal comma", array.getItemsAsList());
}

void integersAndBooleans() {
  heading("clsArrayInteger");
  ravelin::clsArrayInteger integers;
  for (const int value : {3, -1, 2, -1})
    integers.add(static_cast<int16_t>(value));
  showText("getItemsAsList", integers.getItemsAsList());
  integers.orderValuesAsc();
  showText("after orderValuesAsc", integers.getItemsAsList());

  heading("clsArrayBoolean");
  ravelin::clsArrayBoolean booleans;
  for (int i = 0; i < 3; ++i)
    booleans.add(true);
  booleans.clear(true);
  showFlag("addTo(4, False) after add(True) x3 and clear(True)", booleans.addTo(4, false));
  showText("getItemsAsList", booleans.getItemsAsList());
  showFlag("addTo(-1, True)", booleans.addTo(-1, true));
}

void singles() {
  heading("clsArraySingle");
  ravelin::clsArraySingle array;
  array.add(1.25f);
  showNumber("getCount", array.getCount());
  std::cout << "  item(1), one past the last: " << array.item(1) << '\n';
  showError("item(2)", [&] { (void)array.item(2); });
}

void strings() {
  heading("clsArrayString");
  ravelin::clsArrayString array;
  for (const char16_t* text : {u"x", u"y", u"caf\u00e9", u"x"})
    array.add(text);
  showText("getItemsAsList(\"'\")", array.getItemsAsList(u"'"));
  showFlag("find(\"caf\u00e9\")", array.find(u"caf\u00e9"));
  showFlag("find(\"X\")", array.find(u"X"));
  showFlag("RemoveItemWithKey(\"x\")", array.RemoveItemWithKey(u"x"));
  showText("getItemsAsList", array.getItemsAsList());
  showText("getClassIdAsString", array.getClassIdAsString());
  showFlag("generateCopy is Nothing", array.generateCopy() == nullptr);
  showError("letItem(9, \"z\")", [&] { array.letItem(9, u"z"); });
}

void errors() {
  heading("clsError");
  ravelin::clsError error;
  showComplete("  ", "new object, CompleteErrorDescription", error);
  error.init(ravelin::CCEC_FeatureNotImplemented, u"Tarn.Quillmark.Common",
             u"clsArrayDouble.IObject_copyObject()");
  showNumber("getCode", error.getCode());
  showText("getSource", error.getSource());
  showText("getDescription", error.getDescription());
  showComplete("  ", "CompleteErrorDescription", error);
}

}  // namespace

int main(int argc, char** argv) {
  ravelin::setCurrentLocale(*ravelin::findKnownLocale(u"en-US"));
  std::cout << "Ravelin value arrays and errors\n";
  longs();
  doubles();
  integersAndBooleans();
  singles();
  strings();
  errors();
  const std::size_t records = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 200000;
  try {
    ravelin::demo::importSales(records);
  } catch (const ravelin::AutomationError& error) {
    std::cerr << "The import failed: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
