#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

#include "Platform/Foundation/Files/FileDescriptor.h"

/// An open file that is only ever added to, also where other processes add to it. One thread at a
/// time. What fails raises `std::system_error`.
class NSFileHandle {
 public:
  /// Makes a new, empty file, readable by the user only. `std::errc::file_exists` if there is one.
  static std::error_code createFileAtPath(const std::filesystem::path& path);

  /// Opens an existing file with the position at its end; null if it will not open.
  static std::unique_ptr<NSFileHandle> fileHandleForAppendingAtPath(
      const std::filesystem::path& path);

  /// Takes the open file over.
  explicit NSFileHandle(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

  /// Adds `bytes` at the end of the file. Where it fails, a part of them may have been added.
  void writeData(std::string_view bytes);

  /// The position behind what was written last, in bytes from the file's beginning.
  uint64_t offsetInFile() const;

  /// Whether the file is empty or ends in a line end.
  bool endsInLineEnd() const;

  /// Whether this very file is the one at `path`, as far as it can be told.
  bool isFileAtPath(const std::filesystem::path& path) const;

  /// Returns when all that was written is on the disk.
  void synchronizeFile();

  int fileDescriptor() const { return descriptor_.get(); }

 private:
  FileDescriptor descriptor_;
};
