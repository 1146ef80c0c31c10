// Handles of the system that close themselves.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <utility>

namespace platform {

/// A file, or another object of the kernel; empty where the system gave none.
class FileHandle {
 public:
  explicit FileHandle(HANDLE handle) : mHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  FileHandle(FileHandle&& other) noexcept : mHandle(std::exchange(other.mHandle, nullptr)) {}
  FileHandle& operator=(FileHandle&&) = delete;
  ~FileHandle() {
    if (mHandle) CloseHandle(mHandle);
  }

  explicit operator bool() const { return mHandle != nullptr; }
  HANDLE Get() const { return mHandle; }

 private:
  HANDLE mHandle;
};

}  // namespace platform
