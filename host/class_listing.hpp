// What `ravelin --list` prints: the library's classes and enumerations, and one class's members
// written as Basic declarations.
#pragma once

#include <ravelin/frame/class_registry.hpp>
#include <string>

namespace ravelin::host {

// One member as a Basic declaration, e.g.
// "Function add(ByVal vlValue As Long) As Integer" or
// "Property Get item(ByVal viIndex As Integer) As Long".
std::string memberDeclaration(const MemberInfo& member);

// Every class (marked when it cannot be created by name) and every enumeration, one a line.
std::string listLibrary(const ClassRegistry& registry);

// The members of one class, or the values of one enumeration; empty when the registry has no
// class or enumeration of that name.
std::string listClass(const ClassRegistry& registry, StringView name);

}  // namespace ravelin::host
