#include "Platform/Foundation/NSPropertyListSerialization.h"

#include <fstream>
#include <sstream>

#include "Platform/Foundation/BinaryPropertyList.h"
#include "Platform/Foundation/XmlPropertyList.h"

std::optional<PropertyList> propertyListWithData(std::string_view bytes) {
  return bytes.starts_with("bplist") ? binaryPropertyListWithData(bytes)
                                     : xmlPropertyListWithData(bytes);
}

std::optional<PropertyList> propertyListWithContentsOfFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream bytes;
  // The stream's own operator: an iterator lets a failed read, as of a folder, through as an
  // exception.
  if (!stream || !(bytes << stream.rdbuf())) return std::nullopt;
  return propertyListWithData(bytes.view());
}

std::string dataWithPropertyList(const PropertyList& value) {
  return xmlDataWithPropertyList(value);
}
