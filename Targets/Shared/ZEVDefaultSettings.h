#pragma once

#include "Platform/Foundation/PropertyLists/PropertyList.h"

/// The default of every setting that the family of modules knows. The clock formats and the units
/// follow the current locale. Nothing of this is ever stored, so that a later version can change a
/// default for everyone who never touched the setting.
PropertyList::Dictionary defaultSettings(bool isLaptop);
