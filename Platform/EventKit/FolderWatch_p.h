#pragma once

#include <filesystem>
#include <functional>
#include <memory>

/// Tells when calendar files in folders may have changed.
///
/// | what happens                                        | told here                          |
/// |-----------------------------------------------------|------------------------------------|
/// | a file is written and closed, renamed or deleted    | yes                                |
/// | a folder is made in a watched one, renamed, deleted | yes                                |
/// | a watched folder that was not there is made         | yes, by the nearest one above it   |
/// | a file is written to and stays open                 | when it is closed                  |
/// | a hidden file or one of no calendar changes         | no                                 |
/// | the target of a link to a file is changed in place  | no                                 |
/// | another machine does it, on a network file system   | no; the kernel does not tell       |
/// | the user's number of watches is used up             | no                                 |
class FolderWatch {
 public:
  /// Calls `changed` on the main run loop.
  explicit FolderWatch(std::function<void()> changed);
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;
  ~FolderWatch();

  /// Watches a folder, or what is there of the way to it, until this goes. From any thread; again
  /// for the same folder does nothing.
  void add(const std::filesystem::path& folder);

 private:
  class State;
  const std::shared_ptr<State> state_;
};
