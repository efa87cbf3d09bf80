#include "Platform/Foundation/Files/ExtendedAttributes.h"

#include <sys/xattr.h>

#include <cerrno>
#include <string>

namespace {

std::string systemName(std::string_view name) { return "user." + std::string(name); }

std::error_code lastError() { return {errno, std::generic_category()}; }

}  // namespace

std::error_code setExtendedAttribute(const std::filesystem::path& file, std::string_view name) {
  if (setxattr(file.c_str(), systemName(name).c_str(), "", 0, 0) == 0) return {};
  return lastError();
}

std::error_code removeExtendedAttribute(const std::filesystem::path& file, std::string_view name) {
  if (removexattr(file.c_str(), systemName(name).c_str()) == 0 || errno == ENODATA) return {};
  return lastError();
}

bool hasExtendedAttribute(const std::filesystem::path& file, std::string_view name) {
  return getxattr(file.c_str(), systemName(name).c_str(), nullptr, 0) >= 0;
}
