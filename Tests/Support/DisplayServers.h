#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Tests/Support/ChildProcess.h"

/// What a screen shows, or a part of it.
struct ScreenPicture {
  int width = 0;
  int height = 0;
  std::vector<uint32_t> pixels;  ///< 0xRRGGBB, by rows from the upper left.

  uint32_t at(int column, int row) const {
    return pixels.at(static_cast<size_t>(row) * static_cast<size_t>(width) +
                     static_cast<size_t>(column));
  }
};

/// Reads a PNG file. An empty picture if it cannot be read.
ScreenPicture pictureFromPng(const std::filesystem::path& file);

/// A screen of the test's own. It ends with this object.
class DisplayServer {
 public:
  virtual ~DisplayServer() = default;

  /// What a program needs to find the screen and no other.
  virtual Environment environment() const = 0;

  /// Every monitor, as one picture.
  virtual ScreenPicture screenshot() const = 0;

  /// Ends the server at once, as a crash would.
  virtual void crash() = 0;
};

/// An X11 server with the window manager openbox.
class X11Server : public DisplayServer {
 public:
  X11Server(int width, int height, int depth = 24);
  ~X11Server() override;

  Environment environment() const override;
  ScreenPicture screenshot() const override;
  void crash() override;

  /// A mapped top-level window, by the name in its WM_CLASS; 0 if there is none.
  unsigned long windowOfClass(const std::string& name) const;
  /// The values of a property of format 32; empty if it is not set.
  std::vector<unsigned long> property(unsigned long window, const std::string& name) const;
  unsigned long atom(const std::string& name) const;

  void startWindowManager();
  void endWindowManager();

  /// Publishes the bytes of a settings manager's property, as a new manager the first time.
  void publishSettings(const std::string& bytes);
  /// Ends the settings manager.
  void withdrawSettings();
  /// Sets the resources that programs read where there is no settings manager.
  void setResources(const std::string& text) const;

  /// Owns a selection from now on, as a manager does by which others know that there is one.
  void claimSelection(const std::string& name);

  /// Takes the pointer and the keyboard as another program's menu does. False if the server refuses
  /// one of them; then it has neither.
  bool grab() const;
  void ungrab() const;

  /// Drives the pointer and the keyboard, as the program xdotool does with these arguments.
  void input(const std::vector<std::string>& arguments) const { run("xdotool", arguments); }
  /// Divides the screen, as the program xrandr does.
  void setMonitors(const std::vector<std::string>& arguments) const { run("xrandr", arguments); }

 private:
  struct Connection;

  bool windowManagerMapsWindows() const;
  void run(const std::string& program, std::vector<std::string> arguments) const;

  std::unique_ptr<ChildProcess> server_;
  std::string name_;
  unsigned long settingsWindow_ = 0;
  std::unique_ptr<Connection> connection_;
  std::unique_ptr<ChildProcess> windowManager_;
};

/// A Wayland compositor, sway. Its outputs are named "HEADLESS-1", … by itself; within another
/// compositor, whose windows they then are, they are "WL-1", … and can be taken away.
class WaylandServer : public DisplayServer {
 public:
  struct Output {
    int width = 0;
    int height = 0;
    int scale = 1;
  };

  /// The outputs stand side by side.
  explicit WaylandServer(const std::vector<Output>& outputs);
  /// Runs within `parent`, which divides its screen among that many outputs.
  WaylandServer(const WaylandServer& parent, int outputCount);
  ~WaylandServer() override;

  Environment environment() const override;
  /// At the largest scale of any output.
  ScreenPicture screenshot() const override;
  void crash() override;

  /// One output at its own scale; an empty picture if it is not there.
  ScreenPicture screenshotOf(const std::string& output) const;

  /// Sends a command of sway's, in its own words.
  void command(const std::string& text) const;

  /// Asks for "get_outputs", "get_workspaces" and the like; the answer is JSON.
  std::string query(const std::string& type) const;

 private:
  void start(const std::string& configuration, Environment environment);
  FinishedProcess swaymsg(std::vector<std::string> arguments) const;
  ScreenPicture grim(std::vector<std::string> arguments) const;

  std::filesystem::path runtimeFolder_;
  std::unique_ptr<ChildProcess> server_;
};
