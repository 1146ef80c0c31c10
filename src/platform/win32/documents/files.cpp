// The file services of platform/documents/files.h.
//
// SPDX-License-Identifier: MIT
#include "platform/documents/files.h"

#include <windows.h>

#include <stdexcept>
#include <string_view>

#include "core/attempt.h"
#include "platform/win32/documents/file_access.h"
#include "platform/win32/wide_text.h"

namespace platform {

bool FileExists(const std::string& path) {
  return core::AttemptOr(false, [&] { return IsRegularFile(SystemPath(path)); });
}

void CreateFolder(const std::string& path) {
  const std::wstring folder = SystemPath(path);
  // What tells success is the folder, not the call: it may have been there.
  CreateDirectoryW(folder.c_str(), nullptr);
  if (!IsFolder(folder)) throw std::runtime_error("the folder " + path + " could not be created");
}

void WriteUtf16File(const std::string& path, const std::string& text) {
  std::wstring wide = CheckedWideText(text);
  wide.insert(wide.begin(), L'\xFEFF');
  ReplaceWholeFile(SystemPath(path), {reinterpret_cast<const char*>(wide.data()), wide.size() * 2});
}

}  // namespace platform
