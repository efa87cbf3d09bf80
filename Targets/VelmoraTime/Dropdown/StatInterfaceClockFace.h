#pragma once

#include <cstdint>

#include "Platform/AppKit/Views/NSView.h"

/// A dial of 32 points with two hands, light by day and dark by night.
class StatInterfaceClockFace_Time : public NSView {
 public:
  /// What the dial shows.
  struct Reading {
    bool day = false;           ///< The light dial; else as much of the dark one over it as told.
    float lightPercentage = 0;  ///< The share of the dark dial, from 0 to 1.
    int64_t hour = -1;          ///< From 0 to 23; -1 before anything was shown.
    int64_t minute = 0;
    int64_t second = 0;  ///< Has no hand.
  };

  using NSView::NSView;

  const Reading& reading() const { return reading_; }
  void setReading(const Reading& reading);

  bool isFlipped() const override { return true; }
  void drawRect(NSRect rect) override;

 private:
  void drawDial() const;

  Reading reading_;
};
