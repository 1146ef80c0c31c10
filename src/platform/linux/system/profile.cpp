// Profile strings: finding and reading the file. What its bytes answer is profile_text.h's.
//
// SPDX-License-Identifier: MIT
#include "platform/system/profile.h"

#include <optional>

#include "core/attempt.h"
#include "platform/linux/documents/file_access.h"
#include "platform/linux/documents/native_path.h"
#include "platform/linux/system/profile_text.h"

namespace platform {
namespace {

// Settings files have a few KB. The file is read for every question, so a huge one would be felt.
constexpr std::size_t kFileLimit = std::size_t{1} << 20;

}  // namespace

std::string ReadProfileString(const std::string& file, const std::string& section,
                              const std::string& key, const std::string& fallback,
                              std::size_t size) {
  std::optional<std::string> bytes;
  core::Attempt([&] { bytes = ReadRegularFile(NativePath(file), kFileLimit); });
  return ProfileString(bytes, section, key, fallback, size);
}

}  // namespace platform
