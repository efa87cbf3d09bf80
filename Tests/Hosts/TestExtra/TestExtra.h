#pragma once

#include <memory>
#include <string>

#include "Platform/Foundation/Notifications/NSNotificationCenter.h"
#include "Platform/SystemUIPlugin/NSMenuExtra.h"
#include "Tests/Hosts/TestExtra/TestExtraMenu.h"

/// An item for tests of hosts. It draws, in points from its lower left corner:
///
/// - a frame of one point: red at the left, green at the right, blue above, yellow below;
/// - from x = 4 to 12, lines half a point wide, black and white in turn;
/// - a grey body, which gives way to the selected background while its menu is down.
///
/// It writes "menu", "failure" and "willUnload" as lines into the file `$TEST_EXTRA_LOG`. The
/// distributed notification "TestExtraCommand" changes it by its entries: "length" is its width,
/// which it sets at the end of the next drawing, as items do; "failure" the text of an exception
/// that ends each drawing, empty for none; "mark" a line for its file from the next drawing;
/// "rows", "width" and "name" are those of its menu, which it has where `$TEST_EXTRA_MENU` tells
/// the number of rows at the start.
class TestExtra : public NSMenuExtra {
 public:
  void initWithBundle(const NSBundle& bundle) override;
  std::shared_ptr<NSMenu> menu() override;
  void willUnload() override;
  std::string AXTitle() const override { return "Test item"; }

  /// Draws the item and sets its width.
  void drawItem();

 private:
  void obey(const PropertyList::Dictionary& command);

  double wantedLength_ = 60;
  std::string failure_;
  std::string mark_;
  std::unique_ptr<TestExtraMenu> menu_;
  NSObservation commands_;
};
