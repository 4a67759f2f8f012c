// The text WScript.Echo writes for its arguments.
#pragma once

#include <ravelin/frame/variant.hpp>
#include <span>
#include <string>

namespace ravelin::script {

// One argument as the script host shows it: as CStr would, except that a Boolean shows as -1 or
// 0, Null as "null" and Empty as nothing; an object shows its default property when it has one
// without arguments (Err shows its number), else its class name. An array raises 13.
String echoText(const Variant& value);

// The whole line in UTF-8: the arguments joined by one blank, then a line feed.
std::string echoLine(std::span<const Variant> arguments);

}  // namespace ravelin::script
