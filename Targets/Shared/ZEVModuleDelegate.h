#pragma once

/// Who follows a module: told to redraw, and that its size may have changed.
class ZEVModuleDelegate {
 public:
  virtual ~ZEVModuleDelegate() = default;
  virtual void update() = 0;
  virtual void updateSize() = 0;
};
