#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "Platform/EventKit/EventZone_p.h"

class ComponentFault;

/// What the zones mean that files name. Files that define a zone alike share it, so one table is
/// for the files that are read together.
class ZoneTable {
 public:
  /// The zones that one file defines, by name.
  using Definitions = std::map<std::string, std::shared_ptr<const EventZone::Definition>>;

  /// Reads the text of a VTIMEZONE into `definitions`; of two by the same name the first counts.
  /// Its clock goes by it from 1900 to 2100; beyond, it stays as it was. With a fault it is left
  /// out.
  void define(const std::string& component, Definitions& definitions, ComponentFault& fault);

  /// The zone of the system by that name, else the file's own, else one whose name it ends with
  /// ("/example.org/Europe/Berlin") or that Windows calls so. Nothing if it is none of them.
  static std::optional<EventZone> zoneNamed(const std::string& name,
                                            const Definitions& definitions);

 private:
  struct Known {
    std::string name;
    std::shared_ptr<const EventZone::Definition> definition;
  };
  std::unordered_map<std::string, Known> known_;  ///< By their text.
};
