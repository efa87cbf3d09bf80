#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What an application does with files of a type, by the platform's numbers.
using LSRolesMask = uint32_t;

/// The content type of a file extension, "text/calendar" for "ics".
std::string UTTypeCreatePreferredIdentifierForTag(std::string_view fileExtension);

/// The identifier of the desktop's default application for a content type: the name of its desktop
/// entry. Empty if there is none. Desktop entries know no roles; every role gives the same.
std::string LSCopyDefaultRoleHandlerForContentType(std::string_view contentType, LSRolesMask role);

/// Starts an application by its identifier, with a start-up notification: the desktop may show that
/// it is on its way. What goes wrong is said in the system log.
void launchApplication(std::string_view identifier);
