#include "Platform/Foundation/PropertyLists/NSPropertyListSerialization.h"

#include "Platform/Foundation/Files/FileContents_p.h"
#include "Platform/Foundation/PropertyLists/BinaryPropertyList_p.h"
#include "Platform/Foundation/PropertyLists/XmlPropertyList_p.h"

std::optional<PropertyList> propertyListWithData(std::string_view bytes,
                                                 std::vector<std::string>* droppedKeys) {
  std::vector<std::string> dropped;
  auto value = bytes.starts_with("bplist") ? binaryPropertyListWithData(bytes, dropped)
                                           : xmlPropertyListWithData(bytes, dropped);
  if (droppedKeys != nullptr) *droppedKeys = std::move(dropped);
  return value;
}

std::optional<PropertyList> propertyListWithContentsOfFile(const std::filesystem::path& file) {
  const auto contents = contentsOfRegularFile(file);
  return contents.bytes ? propertyListWithData(*contents.bytes) : std::nullopt;
}

std::string dataWithPropertyList(const PropertyList& value) {
  return xmlDataWithPropertyList(value);
}
