#include "Platform/AppKit/Views/NSView.h"

void NSView::setNeedsDisplay(bool needsDisplay) {
  if (needsDisplay && host_ != nullptr) host_->viewNeedsDisplay(*this);
}
