#pragma once

#include <string>
#include <typeinfo>

/// A type's name as it stands in the code: `typeName(typeid(object))` is that of the object's
/// class.
std::string typeName(const std::type_info& type);
