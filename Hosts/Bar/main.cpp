#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "Hosts/Bar/MenuBarProgram.h"
#include "Hosts/Bar/Options.h"
#include "Hosts/Headless/HeadlessHost.h"
#include "Platform/Foundation/Process/StandardDescriptors.h"
#include "Platform/Foundation/Settings/CFPreferences.h"
#include "Platform/SystemUIPlugin/NSMenuBarSlot.h"
#include "Platform/SystemUIPlugin/NSMenuExtraBundle.h"

namespace {

enum ExitStatus { Success = 0, Failure = 1, Misuse = 2 };

void print(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

void drawHeadlessBar(const Options& options) {
  const HeadlessPicture picture =
      drawHeadless({.bundle = options.bundle.value_or(NSBundle::installedPath("VelmoraTime")),
                    .output = options.headlessFolder.value(),
                    .scale = options.headlessScale.value_or(1),
                    .isDark = isMenuBarDark()});
  print(picture.text + "\n" + picture.file.string() + "\n");
}

void run(const Options& options) {
  // Before the bundle is loaded, whose colours follow from it.
  if (options.isDark) setPreferenceOverride("AppleInterfaceStyle", "Dark", ".GlobalPreferences");
  switch (options.action) {
    case Options::Action::PrintHelp:
      print(helpText());
      break;
    case Options::Action::PrintVersion:
      print("velmora-menubar " VELMORA_VERSION "\n");
      break;
    case Options::Action::DrawHeadless:
      drawHeadlessBar(options);
      break;
    case Options::Action::ShowBar:
      showMenuBar(options);
      break;
  }
}

ExitStatus fail(ExitStatus status, const char* reason) {
  std::fprintf(stderr, "velmora-menubar: %s\n", reason);
  return status;
}

}  // namespace

int main(int count, char** arguments) {
  openMissingStandardDescriptors();
  try {
    run(parseOptions({arguments + 1, static_cast<size_t>(count - 1)}));
    return Success;
  } catch (const UsageError& error) {
    return fail(Misuse, error.what());
  } catch (const std::exception& error) {
    return fail(Failure, error.what());
  }
}
