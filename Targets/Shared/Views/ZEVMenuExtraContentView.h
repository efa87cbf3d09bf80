#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "Platform/AppKit/Text/NSStringDrawing.h"
#include "Platform/AppKit/Views/NSView.h"

class ZEVModularExtra;

/// What a module draws into the slot. A drawing object that is never in a view tree: the host view
/// calls `drawAtOffset` during its own drawing, and a redraw is always asked of the host view.
class ZEVMenuExtraContentView_Time : public NSView {
 public:
  /// The preference keys by which one kind of text is drawn. An empty shadow key means no shadow.
  struct TextConfig {
    std::string font;
    std::string color;
    std::string shadow;
  };

  bool isMenuDown() const { return isMenuDown_; }
  void setIsMenuDown(bool isDown) { isMenuDown_ = isDown; }
  ZEVModularExtra* extra() const { return extra_; }
  /// Not owned: the extra owns the module that owns this.
  void setExtra(ZEVModularExtra* extra) { extra_ = extra; }

  virtual void loadConfig() {}
  /// Called by each tick; asks for no drawing.
  virtual void update() {}
  /// Draws at a whole-point offset from the slot's left edge and answers where it ends.
  virtual int64_t drawAtOffset(int64_t) { return 0; }
  virtual double size() const { return 1.0; }

  /// Drops the built text attributes, so that the next draw builds them from the settings.
  void resetTextConfig() { attributes_.clear(); }

  /// The system font of that size; any size outside 8 to 16 gives 13.
  NSFont fontWithSize(int64_t size) const;
  /// The font with digits of equal width, so that a changing clock does not jitter.
  NSFont correctedFont(const NSFont& font) const { return font.withMonospacedNumbers(); }

  /// How text of the kind `key` is drawn in the present state; built once for each state.
  const NSTextAttributes& percentageAttributes(std::string_view key);

 protected:
  void addTextConfig(std::string_view key, TextConfig config);

 private:
  NSTextAttributes builtAttributes(const TextConfig& config) const;

  bool isMenuDown_ = false;
  ZEVModularExtra* extra_ = nullptr;
  std::map<std::string, TextConfig, std::less<>> config_;
  std::map<std::string, NSTextAttributes, std::less<>> attributes_;
};
