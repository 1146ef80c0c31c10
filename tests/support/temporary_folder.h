// A folder for one test, which goes with all that is in it.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace support {

/// A path as the core writes it: joined with "\".
std::string CorePath(const std::filesystem::path& path);

/// All bytes of a file; throws when it cannot be read.
std::string ReadBytes(const std::filesystem::path& path);

/// Replaces a file, creating the folders on the way.
void WriteBytes(const std::filesystem::path& path, std::string_view bytes);

class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return mPath; }

 private:
  std::filesystem::path mPath;
};

}  // namespace support
