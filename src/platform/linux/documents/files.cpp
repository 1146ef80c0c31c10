// The file services of platform/documents/files.h.
//
// SPDX-License-Identifier: MIT
#include "platform/documents/files.h"

#include <glib.h>
#include <glib/gstdio.h>

#include <bit>
#include <cstddef>
#include <stdexcept>
#include <string_view>

#include "core/attempt.h"
#include "platform/linux/documents/file_access.h"
#include "platform/linux/documents/native_path.h"
#include "platform/linux/g_ref.h"

namespace platform {
namespace {

static_assert(std::endian::native == std::endian::little, "units are written as in memory");

// With a byte-order mark. Throws for what is no UTF-8, and for a NUL.
std::string MarkedUtf16(const std::string& text) {
  const auto size = static_cast<glong>(text.size());
  glong read = 0;
  glong units = 0;
  GErrorCheck error;
  const GMemory<gunichar2> wide(g_utf8_to_utf16(text.data(), size, &read, &units, error.Out()));
  error.Check();
  if (read != size)
    throw std::runtime_error("the text ends in the middle, at a NUL or part of a character");
  const auto* bytes = reinterpret_cast<const char*>(wide.get());
  return "\xFF\xFE" + std::string(bytes, static_cast<std::size_t>(units) * sizeof(gunichar2));
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
  constexpr int kOnlyForItsOwner = 0600;
  ReplaceFile(NativePath(path), MarkedUtf16(text), kOnlyForItsOwner);
}

}  // namespace platform
