#include "Tests/Support/DisplayServers.h"

#include <cairo.h>
#include <pwd.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "Platform/Foundation/LibraryHandle.h"
#include "Tests/Support/TestEnvironment.h"

namespace fs = std::filesystem;

namespace {

/// One colour of a pixel, of whatever width the screen gives it, from 0 to 255.
uint32_t colorPart(unsigned long pixel, unsigned long mask) {
  return static_cast<uint32_t>(((pixel & mask) * 255 + mask / 2) / mask);
}

}  // namespace

ScreenPicture pictureFromPng(const fs::path& file) {
  const LibraryHandle<cairo_surface_t, cairo_surface_destroy> surface(
      cairo_image_surface_create_from_png(file.c_str()));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return {};
  ScreenPicture picture;
  picture.width = cairo_image_surface_get_width(surface.get());
  picture.height = cairo_image_surface_get_height(surface.get());
  const unsigned char* row = cairo_image_surface_get_data(surface.get());
  const int stride = cairo_image_surface_get_stride(surface.get());
  for (int y = 0; y < picture.height; ++y, row += stride) {
    const auto* pixels = reinterpret_cast<const uint32_t*>(row);
    for (int x = 0; x < picture.width; ++x)
      picture.pixels.push_back(pixels[x] & 0xFFFFFF);
  }
  return picture;
}

struct X11Server::Connection {
  explicit Connection(const std::string& name) : display(XOpenDisplay(name.c_str())) {
    if (display == nullptr) throw std::runtime_error("no connection to the X11 server " + name);
    // A window may go between two questions about it.
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
  }
  ~Connection() { XCloseDisplay(display); }

  Display* display;
};

X11Server::X11Server(int width, int height, int depth) {
  const std::string size =
      std::to_string(width) + "x" + std::to_string(height) + "x" + std::to_string(depth);
  server_ = std::make_unique<ChildProcess>(std::vector<std::string>{
      "Xvfb", "-displayfd", "1", "-screen", "0", size, "-nolisten", "tcp", "-noreset"});
  if (!waitUntil([this] { return server_->output().ends_with('\n'); })) {
    throw std::runtime_error("no X11 server: " + server_->errors());
  }
  const std::string number = server_->output();
  name_ = ":" + number.substr(0, number.find('\n'));
  connection_ = std::make_unique<Connection>(name_);
  startWindowManager();
}

void X11Server::startWindowManager() {
  windowManager_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"openbox", "--sm-disable"}, environment());
  if (!waitUntil([this] { return windowManagerMapsWindows(); })) {
    throw std::runtime_error("no window manager: " + windowManager_->errors());
  }
}

void X11Server::endWindowManager() {
  windowManager_->sendSignal(SIGTERM);
  windowManager_->waitForExit();
}

X11Server::~X11Server() {
  connection_.reset();
  windowManager_.reset();
  // An X11 server that may tidy up leaves its display's number to the next one.
  server_->sendSignal(SIGTERM);
  server_->waitForExit();
}

bool X11Server::windowManagerMapsWindows() const {
  // It announces itself before it takes care of windows, and loses one that comes in between.
  Display* display = connection_->display;
  const Window window =
      XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0);
  XMapWindow(display, window);
  XSync(display, False);
  const bool isManaged = waitUntil([&] { return !property(window, "WM_STATE").empty(); },
                                   std::chrono::milliseconds(200));
  XDestroyWindow(display, window);
  XSync(display, False);
  return isManaged && waitUntil([&] {
           const auto windows = property(DefaultRootWindow(display), "_NET_CLIENT_LIST");
           return std::ranges::find(windows, window) == windows.end();
         });
}

Environment X11Server::environment() const {
  return {{"DISPLAY", name_}, {"WAYLAND_DISPLAY", std::nullopt}, {"GDK_BACKEND", std::nullopt}};
}

ScreenPicture X11Server::screenshot() const {
  Display* display = connection_->display;
  const int screen = DefaultScreen(display);
  ScreenPicture picture;
  picture.width = DisplayWidth(display, screen);
  picture.height = DisplayHeight(display, screen);
  XImage* image =
      XGetImage(display, DefaultRootWindow(display), 0, 0, static_cast<unsigned>(picture.width),
                static_cast<unsigned>(picture.height), AllPlanes, ZPixmap);
  if (image == nullptr) throw std::runtime_error("no picture of the X11 screen");
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      const unsigned long pixel = XGetPixel(image, x, y);
      picture.pixels.push_back(colorPart(pixel, image->red_mask) << 16 |
                               colorPart(pixel, image->green_mask) << 8 |
                               colorPart(pixel, image->blue_mask));
    }
  }
  XDestroyImage(image);
  return picture;
}

void X11Server::crash() {
  // Xlib ends a process whose server goes: this one leaves first.
  connection_.reset();
  server_->sendSignal(SIGKILL);
}

unsigned long X11Server::windowOfClass(const std::string& name) const {
  Display* display = connection_->display;
  for (const Window window : property(DefaultRootWindow(display), "_NET_CLIENT_LIST")) {
    XClassHint hint{};
    if (!XGetClassHint(display, window, &hint)) continue;
    const bool found = name == hint.res_name;
    XFree(hint.res_name);
    XFree(hint.res_class);
    if (found) return window;
  }
  return 0;
}

std::vector<unsigned long> X11Server::property(unsigned long window,
                                               const std::string& name) const {
  constexpr long MaximumCount = 1024;
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  if (XGetWindowProperty(connection_->display, window, atom(name), 0, MaximumCount, False,
                         AnyPropertyType, &type, &format, &count, &rest, &data) != Success ||
      data == nullptr) {
    return {};
  }
  std::vector<unsigned long> values;
  if (format == 32) {
    const auto* longs = reinterpret_cast<const unsigned long*>(data);
    values.assign(longs, longs + count);
  }
  XFree(data);
  return values;
}

unsigned long X11Server::atom(const std::string& name) const {
  return XInternAtom(connection_->display, name.c_str(), False);
}

void X11Server::publishSettings(const std::string& bytes) {
  Display* display = connection_->display;
  const Window root = DefaultRootWindow(display);
  const bool isNew = settingsWindow_ == 0;
  if (isNew) settingsWindow_ = XCreateSimpleWindow(display, root, 0, 0, 1, 1, 0, 0, 0);
  XChangeProperty(display, settingsWindow_, atom("_XSETTINGS_SETTINGS"),
                  atom("_XSETTINGS_SETTINGS"), 8, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(bytes.data()),
                  static_cast<int>(bytes.size()));
  if (isNew) {
    XSetSelectionOwner(display, atom("_XSETTINGS_S0"), settingsWindow_, CurrentTime);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = root;
    event.xclient.message_type = atom("MANAGER");
    event.xclient.format = 32;
    event.xclient.data.l[1] = static_cast<long>(atom("_XSETTINGS_S0"));
    event.xclient.data.l[2] = static_cast<long>(settingsWindow_);
    XSendEvent(display, root, False, StructureNotifyMask, &event);
  }
  XFlush(display);
}

void X11Server::withdrawSettings() {
  XDestroyWindow(connection_->display, std::exchange(settingsWindow_, 0));
  XFlush(connection_->display);
}

void X11Server::setResources(const std::string& text) const {
  Display* display = connection_->display;
  XChangeProperty(display, DefaultRootWindow(display), XA_RESOURCE_MANAGER, XA_STRING, 8,
                  PropModeReplace, reinterpret_cast<const unsigned char*>(text.data()),
                  static_cast<int>(text.size()));
  XFlush(display);
}

void X11Server::claimSelection(const std::string& name) {
  Display* display = connection_->display;
  const Window owner =
      XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0);
  XSetSelectionOwner(display, atom(name), owner, CurrentTime);
  XSync(display, False);
}

bool X11Server::grab() const {
  Display* display = connection_->display;
  const Window root = DefaultRootWindow(display);
  const bool isOurs =
      XGrabPointer(display, root, False, ButtonPressMask, GrabModeAsync, GrabModeAsync, None, None,
                   CurrentTime) == GrabSuccess &&
      XGrabKeyboard(display, root, False, GrabModeAsync, GrabModeAsync, CurrentTime) == GrabSuccess;
  if (!isOurs) ungrab();
  return isOurs;
}

void X11Server::ungrab() const {
  XUngrabPointer(connection_->display, CurrentTime);
  XUngrabKeyboard(connection_->display, CurrentTime);
  XSync(connection_->display, False);
}

void X11Server::run(const std::string& program, std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), program);
  const auto done = runToEnd(arguments, environment());
  if (done.status != 0) throw std::runtime_error(program + ": " + done.errors);
}

WaylandServer::WaylandServer(const std::vector<Output>& outputs) {
  std::string configuration;
  int left = 0;
  for (size_t index = 0; index < outputs.size(); ++index) {
    const Output& output = outputs[index];
    configuration += "output HEADLESS-" + std::to_string(index + 1) + " resolution " +
                     std::to_string(output.width) + "x" + std::to_string(output.height) +
                     " position " + std::to_string(left) + " 0 scale " +
                     std::to_string(output.scale) + "\n";
    left += output.width / output.scale;
  }
  start(configuration,
        {{"WLR_BACKENDS", "headless"}, {"WLR_HEADLESS_OUTPUTS", std::to_string(outputs.size())}});
}

WaylandServer::WaylandServer(const WaylandServer& parent, int outputCount) {
  start("", {{"WLR_BACKENDS", "wayland"},
             {"WLR_WL_OUTPUTS", std::to_string(outputCount)},
             {"WAYLAND_DISPLAY", (parent.runtimeFolder_ / "wayland-1").string()}});
}

WaylandServer::~WaylandServer() = default;

void WaylandServer::start(const std::string& configuration, Environment environment) {
  std::string folder = (testFolder() / "sway-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no folder for sway");
  runtimeFolder_ = folder;
  const fs::path file = runtimeFolder_ / "config";
  std::ofstream(file) << "xwayland disable\ndefault_border none\n" << configuration;
  std::vector<std::string> command{"sway", "--unsupported-gpu", "-c", file.string()};
  if (geteuid() == 0) {
    // Sway does not run as root. The other user needs a way to its own folder.
    const passwd* user = getpwnam("nobody");
    if (user == nullptr) throw std::runtime_error("no user to run a compositor as");
    fs::permissions(testFolder(), fs::perms::owner_all | fs::perms::others_exec);
    if (chown(runtimeFolder_.c_str(), user->pw_uid, user->pw_gid) != 0) {
      throw std::runtime_error("the compositor's folder cannot be given away");
    }
    // The kernel forgets the wish to end with the parent when the user changes.
    command.insert(command.begin(), {"setpriv", "--reuid=" + std::to_string(user->pw_uid),
                                     "--regid=" + std::to_string(user->pw_gid), "--clear-groups",
                                     "--pdeathsig=KILL"});
  }
  environment.merge(Environment{{"XDG_RUNTIME_DIR", runtimeFolder_.string()},
                                {"HOME", runtimeFolder_.string()},
                                {"SWAYSOCK", (runtimeFolder_ / "sway.sock").string()},
                                {"WLR_LIBINPUT_NO_DEVICES", "1"},
                                {"WLR_RENDERER", "pixman"}});
  server_ = std::make_unique<ChildProcess>(command, environment);
  if (!waitUntil([this] { return swaymsg({"-t", "get_version"}).status == 0; })) {
    throw std::runtime_error("no Wayland compositor: " + server_->errors());
  }
}

Environment WaylandServer::environment() const {
  return {{"XDG_RUNTIME_DIR", runtimeFolder_.string()},
          {"WAYLAND_DISPLAY", "wayland-1"},
          {"SWAYSOCK", (runtimeFolder_ / "sway.sock").string()},
          {"DISPLAY", std::nullopt},
          {"GDK_BACKEND", std::nullopt}};
}

FinishedProcess WaylandServer::swaymsg(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), "swaymsg");
  return runToEnd(arguments, environment());
}

void WaylandServer::command(const std::string& text) const {
  const auto done = swaymsg({"--", text});
  if (done.status != 0) throw std::runtime_error(text + ": " + done.output + done.errors);
}

std::string WaylandServer::query(const std::string& type) const {
  return swaymsg({"--raw", "-t", type}).output;
}

ScreenPicture WaylandServer::grim(std::vector<std::string> arguments) const {
  const fs::path file = testFolder() / "screenshot.png";
  fs::remove(file);
  arguments.insert(arguments.begin(), "grim");
  arguments.push_back(file.string());
  runToEnd(arguments, environment());
  return pictureFromPng(file);
}

ScreenPicture WaylandServer::screenshot() const { return grim({}); }

ScreenPicture WaylandServer::screenshotOf(const std::string& output) const {
  return grim({"-o", output});
}

void WaylandServer::crash() { server_->sendSignal(SIGKILL); }
