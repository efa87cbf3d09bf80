#pragma once

#include "Platform/AppKit/Views/NSView.h"

/// The band behind the length of the day, in the colours of the highlight.
class StatInterfaceDayLengthBackground_Time : public NSView {
 public:
  using NSView::NSView;
  void drawRect(NSRect rect) override;
};
