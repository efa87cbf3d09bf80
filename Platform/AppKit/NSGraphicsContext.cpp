#include "Platform/AppKit/NSGraphicsContext.h"

namespace {

thread_local NSGraphicsContext* current = nullptr;

}  // namespace

NSGraphicsContext* NSGraphicsContext::currentContext() { return current; }

void NSGraphicsContext::restoreGraphicsState() {
  state_ = savedStates_.back();
  savedStates_.pop_back();
}

void NSGraphicsContext::flip(double height) {
  concat(NSAffineTransform::flip(height));
  state_.isFlipped = !state_.isFlipped;
}

NSCurrentGraphicsContext::NSCurrentGraphicsContext(NSGraphicsContext& context)
    : previous_(current) {
  current = &context;
}

NSCurrentGraphicsContext::~NSCurrentGraphicsContext() { current = previous_; }
