// How long a user waits for a menu, whoever shows it: from a click to the moment when a pixel of
// the screen shows something else, and the same for a submenu from the pointer's coming to rest.
// Works on the display that $DISPLAY names, where the program under test runs already.
//
// Usage: menu_latency RUNS CLICK_X CLICK_Y PIXEL_X PIXEL_Y [ROW_X ROW_Y PIXEL_X PIXEL_Y]
// Prints the least, the median and the greatest time in milliseconds, a line each for the two.

#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Place {
  int x = 0;
  int y = 0;
};

class Desk {
 public:
  Desk() : display_(XOpenDisplay(nullptr)) {
    if (display_ == nullptr) {
      std::fputs("menu_latency: there is no X11 display\n", stderr);
      std::exit(1);
    }
  }

  unsigned long pixel(Place place) const {
    XImage* image = XGetImage(display_, DefaultRootWindow(display_), place.x, place.y, 1, 1,
                              AllPlanes, ZPixmap);
    const unsigned long color = XGetPixel(image, 0, 0);
    XDestroyImage(image);
    return color;
  }

  void move(Place place) const {
    XTestFakeMotionEvent(display_, -1, place.x, place.y, CurrentTime);
    XSync(display_, False);
  }
  void click() const {
    XTestFakeButtonEvent(display_, 1, True, CurrentTime);
    XTestFakeButtonEvent(display_, 1, False, CurrentTime);
    XSync(display_, False);
  }
  void escape() const {
    const KeyCode code = XKeysymToKeycode(display_, XK_Escape);
    XTestFakeKeyEvent(display_, code, True, CurrentTime);
    XTestFakeKeyEvent(display_, code, False, CurrentTime);
    XSync(display_, False);
  }

  /// Milliseconds until the pixel is another than `before`.
  double waitForChange(Place place, unsigned long before) const {
    const auto start = Clock::now();
    while (pixel(place) == before) {
      if (Clock::now() - start > std::chrono::seconds(5)) {
        std::fputs("menu_latency: nothing has changed within five seconds\n", stderr);
        std::exit(1);
      }
    }
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
  }

 private:
  Display* display_;
};

void print(const char* what, std::vector<double> times) {
  std::ranges::sort(times);
  std::printf("%s: %.1f %.1f %.1f ms\n", what, times.front(), times[times.size() / 2],
              times.back());
}

}  // namespace

int main(int count, char** arguments) {
  std::vector<int> numbers;
  for (int index = 1; index < count; ++index)
    numbers.push_back(std::atoi(arguments[index]));
  if (numbers.size() != 5 && numbers.size() != 9) {
    std::fputs(
        "menu_latency: give RUNS CLICK_X CLICK_Y PIXEL_X PIXEL_Y [ROW_X ROW_Y PIXEL_X PIXEL_Y]\n",
        stderr);
    return 2;
  }
  const Desk screen;
  const Place slot{numbers[1], numbers[2]};
  const Place inMenu{numbers[3], numbers[4]};
  std::vector<double> opening;
  std::vector<double> submenu;
  for (int run = 0; run < numbers[0]; ++run) {
    const unsigned long ground = screen.pixel(inMenu);
    screen.move(slot);
    screen.click();
    opening.push_back(screen.waitForChange(inMenu, ground));
    if (numbers.size() == 9) {
      const Place inSubmenu{numbers[7], numbers[8]};
      const unsigned long before = screen.pixel(inSubmenu);
      screen.move({numbers[5], numbers[6]});
      submenu.push_back(screen.waitForChange(inSubmenu, before));
      screen.escape();
    }
    screen.escape();
    while (screen.pixel(inMenu) != ground) {
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  print("click to menu", opening);
  if (!submenu.empty()) print("rest to submenu", submenu);
  return 0;
}
