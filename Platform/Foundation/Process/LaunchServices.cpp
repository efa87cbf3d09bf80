#include "Platform/Foundation/Process/LaunchServices.h"

#include <gio/gdesktopappinfo.h>
#include <unistd.h>

#include "Platform/Foundation/LibraryHandle.h"
#include "Platform/Foundation/Process/NSLog.h"

namespace {

using AppInfo = LibraryHandle<GAppInfo, g_object_unref>;
using OwnedText = LibraryHandle<char, g_free>;

/// GIO hands the identifier of a start-up to the application, but makes none itself.
char* startUpIdentifier(GAppLaunchContext*, GAppInfo* application, GList*) {
  static int count = 0;
  const char* name = g_app_info_get_executable(application);
  OwnedText base(g_path_get_basename(name != nullptr ? name : "application"));
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): GLib formats so.
  return g_strdup_printf("%s-%d-%s-%d", base.get(), static_cast<int>(getpid()), g_get_host_name(),
                         ++count);
}

void initContextClass(gpointer gClass, gpointer) {
  static_cast<GAppLaunchContextClass*>(gClass)->get_startup_notify_id = startUpIdentifier;
}

GType launchContextType() {
  static const GType type = g_type_register_static_simple(
      G_TYPE_APP_LAUNCH_CONTEXT, "VelmoraLaunchContext", sizeof(GAppLaunchContextClass),
      initContextClass, sizeof(GAppLaunchContext), nullptr, G_TYPE_FLAG_NONE);
  return type;
}

}  // namespace

std::string UTTypeCreatePreferredIdentifierForTag(std::string_view fileExtension) {
  const std::string name = "file." + std::string(fileExtension);
  const OwnedText type(g_content_type_guess(name.c_str(), nullptr, 0, nullptr));
  return type ? type.get() : "";
}

std::string LSCopyDefaultRoleHandlerForContentType(std::string_view contentType, LSRolesMask) {
  const AppInfo application(
      g_app_info_get_default_for_type(std::string(contentType).c_str(), FALSE));
  const char* identifier = application ? g_app_info_get_id(application.get()) : nullptr;
  return identifier != nullptr ? identifier : "";
}

void launchApplication(std::string_view identifier) {
  const AppInfo application(
      reinterpret_cast<GAppInfo*>(g_desktop_app_info_new(std::string(identifier).c_str())));
  if (!application) {
    NSLog("there is no application " + std::string(identifier));
    return;
  }
  const LibraryHandle<GAppLaunchContext, g_object_unref> context(
      static_cast<GAppLaunchContext*>(g_object_new(launchContextType(), nullptr)));
  GError* error = nullptr;
  if (g_app_info_launch(application.get(), nullptr, context.get(), &error) != FALSE) return;
  const LibraryHandle<GError, g_error_free> owned(error);
  NSLog(std::string(identifier) + " could not be started: " + error->message);
}
