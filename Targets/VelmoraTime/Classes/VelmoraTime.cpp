#include "Targets/VelmoraTime/Classes/VelmoraTime.h"

#include "Targets/VelmoraTime/Classes/ZEVTimeModule.h"

void VelmoraTime::loadModules() { addModule(make<ZEVTimeModule_Time>(*this)); }
