// The catalogue of the library's public classes and enumerations: what a host can create and
// call by name.
#pragma once

#include <ravelin/frame/class_registry.hpp>

namespace ravelin {

// The registry of every public class and enumeration of the library, filled on first use.
const ClassRegistry& libraryRegistry();

// Adds the library's public classes and enumerations to a registry (a host that adds classes of
// its own starts with these).
void registerLibraryClasses(ClassRegistry& registry);

}  // namespace ravelin
