#include "Targets/VelmoraTime/Dropdown/SunPanelRows.h"

#include <string>
#include <utility>

#include "Platform/AppKit/Views/NSImageView.h"
#include "Targets/Shared/Dropdown/DropdownTheme.h"
#include "Targets/Shared/ZEVImageCache.h"

namespace {

// In points, from the line's lower left corner.
constexpr NSSize LineSize = {320, 16};
constexpr NSRect ImagePlace = {{9, 0}, {16, 16}};
constexpr NSRect LabelPlace = {{26, 0}, {131, 15}};
constexpr NSRect FieldPlace = {{164, 0}, {72, 15}};
constexpr NSRect Value2Place = {{240, 0}, {72, 15}};

constexpr double HeaderSize = 10;

/// A line of the panel's table. Its name is read aloud for it, then its values.
class SunPanelRow_Time : public StatInterfaceView_Time {
 public:
  SunPanelRow_Time(NSRect frame, std::shared_ptr<StatInterfaceTextField_Time> name)
      : StatInterfaceView_Time(frame), name_(std::move(name)) {}

  NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::Row; }
  std::string accessibilityLabel() const override { return name_->stringValue(); }

 private:
  std::shared_ptr<StatInterfaceTextField_Time> name_;
};

template <typename Kind, NSAccessibilityRole Role>
class SunPanelField : public Kind {
 public:
  using Kind::Kind;
  NSAccessibilityRole accessibilityRole() const override { return Role; }
};

/// The item with its line and the three fields, which are of one kind.
template <typename Kind>
std::shared_ptr<ZEVMenuItem_Time> itemWithFields(int64_t y) {
  auto item = std::make_shared<ZEVMenuItem_Time>();
  item->setLabel(std::make_shared<SunPanelField<Kind, NSAccessibilityRole::None>>(LabelPlace));
  item->setField(std::make_shared<SunPanelField<Kind, NSAccessibilityRole::Cell>>(FieldPlace));
  item->setValue2(std::make_shared<SunPanelField<Kind, NSAccessibilityRole::Cell>>(Value2Place));
  const auto line = std::make_shared<SunPanelRow_Time>(
      NSRect{{0, static_cast<double>(y)}, LineSize}, item->label());
  line->setBackgroundDisabled(true);
  for (const auto& field : {item->label(), item->field(), item->value2()}) {
    field->updateColors();
    line->addSubview(field);
  }
  item->field()->setAlignment(NSTextAlignment::Right);
  item->value2()->setAlignment(NSTextAlignment::Right);
  item->setAlternateView(line);
  return item;
}

}  // namespace

std::shared_ptr<ZEVMenuItem_Time> createTripleSunRow(std::string_view label,
                                                     std::string_view imageName, int64_t y) {
  auto item = itemWithFields<StatInterfaceTextFieldLabel_Time>(y);
  item->label()->setStringValue(label);
  const auto image = std::make_shared<NSImageView>(ImagePlace);
  image->setImage(ZEVImageNamed(imageName));
  item->alternateView()->addSubview(image);
  return item;
}

std::shared_ptr<ZEVMenuItem_Time> createTripleSunHeaderRow(std::string_view label,
                                                           std::string_view field,
                                                           std::string_view value2, int64_t y) {
  auto item = itemWithFields<StatInterfaceTextFieldHeader_Time>(y);
  const std::pair<const std::shared_ptr<StatInterfaceTextField_Time>&, std::string_view> titles[] =
      {{item->label(), label}, {item->field(), field}, {item->value2(), value2}};
  for (const auto& [title, text] : titles) {
    title->setFont(zevMediumFont(HeaderSize));
    title->setStringValue(text);
  }
  return item;
}
