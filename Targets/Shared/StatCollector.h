#pragma once

/// A source of data that works on its own and tells modules when there is something new.
class StatCollector {
 public:
  virtual ~StatCollector() = default;
};
