#pragma once

#include <libecal/libecal.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "Platform/EventKit/Evolution/EvolutionSignals.h"
#include "Platform/EventKit/ICalendarFile_p.h"
#include "Platform/EventKit/StoredCalendar_p.h"

/// One calendar of Evolution Data Server. All its events are read at once and kept until the
/// service tells that one of them has changed: what it gives of a period leaves out the times of a
/// series that were moved out of it.
class EvolutionCalendar {
 public:
  /// `changed` is called on the main thread.
  EvolutionCalendar(ESource* source, std::function<void()> changed);

  /// Its events, read again where they have changed. Null while the service does not answer.
  const StoredCalendar* events(ReadingTables& tables);

 private:
  bool connect();
  bool read(ReadingTables& tables);

  ObjectHandle<ESource> source_;
  std::function<void()> changed_;
  ObjectHandle<ECalClient> client_;
  ObjectHandle<ECalClientView> view_;
  /// Shared with the signals, which may come while this ends.
  std::shared_ptr<std::atomic<bool>> isStale_ = std::make_shared<std::atomic<bool>>(true);
  StoredCalendar stored_;
  std::unique_ptr<EvolutionSignals> signals_;
};
