#pragma once

/// Reads what fonts the machine has and loads the interface's, on a thread of its own: a program
/// that begins with this finds both when it comes to its first text. Main thread only.
class FontLoading {
 public:
  FontLoading();
  FontLoading(const FontLoading&) = delete;
  FontLoading& operator=(const FontLoading&) = delete;
  /// Waits for the thread, which must not outlast what it uses.
  ~FontLoading();
};
