// The file services of platform/files.h.
//
// SPDX-License-Identifier: MIT
#include "platform/files.h"

#include <glib.h>
#include <glib/gstdio.h>

#include <stdexcept>

#include "core/attempt.h"
#include "platform/linux/file_access.h"
#include "platform/linux/g_ref.h"
#include "platform/linux/paths.h"

namespace platform {
namespace {

std::string Utf16LittleEndian(const std::string& text) {
  GErrorCheck error;
  gsize count = 0;
  const GMemory<char> converted(g_convert(text.data(), static_cast<gssize>(text.size()), "UTF-16LE",
                                          "UTF-8", nullptr, &count, error.Out()));
  error.Check();
  return {converted.get(), count};
}

}  // namespace

bool FileExists(const std::string& path) {
  return core::AttemptOr(false, [&] { return IsRegularFile(NativePath(path)); });
}

void CreateFolder(const std::string& path) {
  const std::string folder = NativePath(path);
  // For the person alone, as settings and the page are: whoever may write to the folder may put
  // another page in the place of ours. What tells success is the folder, not the call: it may have
  // been there.
  constexpr int kOnlyForItsOwner = 0700;
  g_mkdir(folder.c_str(), kOnlyForItsOwner);
  if (!g_file_test(folder.c_str(), G_FILE_TEST_IS_DIR)) {
    throw std::runtime_error("the folder " + folder + " could not be created");
  }
}

void WriteUtf16File(const std::string& path, const std::string& text) {
  constexpr std::string_view kByteOrderMark = "\xFF\xFE";
  constexpr int kOnlyForItsOwner = 0600;
  ReplaceFile(NativePath(path), std::string(kByteOrderMark) + Utf16LittleEndian(text),
              kOnlyForItsOwner);
}

}  // namespace platform
