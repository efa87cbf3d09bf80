#include "Platform/AppKit/NSGraphicsContext.h"

namespace {

thread_local NSGraphicsContext* current = nullptr;

}  // namespace

NSGraphicsContext* NSGraphicsContext::currentContext() { return current; }

NSCurrentGraphicsContext::NSCurrentGraphicsContext(NSGraphicsContext& context)
    : previous_(current) {
  current = &context;
}

NSCurrentGraphicsContext::~NSCurrentGraphicsContext() { current = previous_; }
