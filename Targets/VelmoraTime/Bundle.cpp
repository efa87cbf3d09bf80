#include "Platform/SystemUIPlugin/NSMenuExtraBundle.h"
#include "Targets/VelmoraTime/Classes/VelmoraTime.h"

extern "C" __attribute__((visibility("default"))) void NSMakePrincipalClass(
    std::shared_ptr<NSMenuExtra>& extra) {
  extra = std::make_shared<VelmoraTime>();
}
