// Reading and replacing whole files.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/documents/file_access.h"

#include <windows.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <system_error>

#include "platform/errors.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide_text.h"

namespace platform {
namespace {

// What CreateDirectoryW takes at most; CreateFileW takes twelve more.
constexpr std::size_t kLongestOldPath = 247;

void CheckFile(bool succeeded, const std::wstring& path) {
  if (succeeded) return;
  const auto code = static_cast<int>(GetLastError());
  throw std::system_error(code, std::system_category(), Utf8Text(path));
}

std::wstring FullPath(const std::wstring& path) {
  const DWORD needed = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring full(needed, L'\0');
  const DWORD length = GetFullPathNameW(path.c_str(), needed, full.data(), nullptr);
  CheckFile(length > 0 && length < needed, path);
  full.resize(length);
  return full;
}

FileHandle Open(const std::wstring& path, DWORD access, DWORD sharing, DWORD disposition) {
  FileHandle file(CreateFileW(path.c_str(), access, sharing, nullptr, disposition,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
  CheckFile(static_cast<bool>(file), path);
  return file;
}

/// A name that nobody else has; CREATE_NEW makes sure of it.
std::wstring NewNameBeside(const std::wstring& path) {
  std::random_device random;
  return path + L"." + std::to_wstring(random()) + L".new";
}

void WriteAll(HANDLE file, std::string_view bytes, const std::wstring& path) {
  while (!bytes.empty()) {
    const auto count = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 20));
    DWORD written = 0;
    CheckFile(WriteFile(file, bytes.data(), count, &written, nullptr) != 0, path);
    bytes.remove_prefix(written);
  }
  // Before it takes the old one's place: a power failure leaves one or the other, not half a file.
  CheckFile(FlushFileBuffers(file) != 0, path);
}

/// Deletes the file unless it was given its place.
class NewFile {
 public:
  explicit NewFile(const std::wstring& path) : mPath(NewNameBeside(path)) {}
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() {
    if (!mPlaced) DeleteFileW(mPath.c_str());
  }

  void Write(std::string_view bytes) const {
    const FileHandle file = Open(mPath, GENERIC_WRITE, 0, CREATE_NEW);
    WriteAll(file.Get(), bytes, mPath);
  }
  void TakePlaceOf(const std::wstring& path) {
    CheckFile(MoveFileExW(mPath.c_str(), path.c_str(),
                          MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0,
              path);
    mPlaced = true;
  }

 private:
  const std::wstring mPath;
  bool mPlaced = false;
};

bool HasKind(const std::wstring& path, bool folder) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  return ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) == folder;
}

}  // namespace

std::wstring SystemPath(const std::string& path) {
  if (path.find('\0') != std::string::npos) throw Unsupported("a path holds a NUL");
  const std::wstring wide = WideText(path);
  if (wide.size() <= kLongestOldPath || wide.starts_with(LR"(\\?\)")) return wide;
  // Behind the mark nothing is resolved any more, neither ".." nor "/".
  const std::wstring full = FullPath(wide);
  return full.starts_with(LR"(\\)") ? LR"(\\?\UNC)" + full.substr(1) : LR"(\\?\)" + full;
}

bool IsRegularFile(const std::wstring& path) { return HasKind(path, false); }

bool IsFolder(const std::wstring& path) { return HasKind(path, true); }

std::string ReadRegularFile(const std::wstring& path, std::size_t limit) {
  const FileHandle file = Open(
      path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING);
  if (GetFileType(file.Get()) != FILE_TYPE_DISK) {
    throw std::runtime_error(Utf8Text(path) + " is not a regular file");
  }
  // Until its end, whatever length it said: it may grow meanwhile.
  std::string bytes;
  std::string buffer(std::size_t{64} << 10, '\0');
  for (;;) {
    DWORD count = 0;
    CheckFile(ReadFile(file.Get(), buffer.data(), static_cast<DWORD>(buffer.size()), &count,
                       nullptr) != 0,
              path);
    if (count == 0) return bytes;
    if (count > limit - bytes.size()) throw std::runtime_error(Utf8Text(path) + " is too long");
    bytes.append(buffer, 0, count);
  }
}

void ReplaceWholeFile(const std::wstring& path, std::string_view bytes) {
  NewFile file(path);
  file.Write(bytes);
  file.TakePlaceOf(path);
}

}  // namespace platform
