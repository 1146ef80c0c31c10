// The running program: its file, its version information, its arguments. Which instance is the
// first, and finding its window, are instance.cpp's work.
//
// SPDX-License-Identifier: MIT
#include "platform/system/program.h"

#include <windows.h>

#include <stdexcept>
#include <string_view>

#include "platform/win32/system/program_file.h"
#include "platform/win32/system_library.h"
#include "platform/win32/wide_text.h"

namespace platform {
namespace {

// Longer than any path that Windows knows.
constexpr std::size_t kLongestPath = 32768;

// version.dll is looked up, since Windows would load one that lies beside the program.
template <class Function>
Function* VersionFunction(const char* name) {
  return SystemFunction<Function>(L"version.dll", name);
}

/// The program's version resource, as the functions of version.dll want it.
class VersionInformation {
 public:
  VersionInformation() {
    const std::wstring file = ProgramFile();
    const auto size = VersionFunction<DWORD WINAPI(LPCWSTR, DWORD*)>("GetFileVersionInfoSizeW");
    const auto read =
        VersionFunction<BOOL WINAPI(LPCWSTR, DWORD, DWORD, void*)>("GetFileVersionInfoW");
    DWORD ignored = 0;
    mBytes.resize(size(file.c_str(), &ignored));
    const auto length = static_cast<DWORD>(mBytes.size());
    if (length == 0 || !read(file.c_str(), 0, length, mBytes.data())) {
      throw std::runtime_error("the program has no version information");
    }
  }

  /// A text of the resource's only language, which is English.
  std::string Text(const std::wstring& name) const {
    const auto [value, length] = Query(L"\\StringFileInfo\\040904b0\\" + name);
    const std::wstring_view text(static_cast<const wchar_t*>(value), length);
    return Utf8Text(text.substr(0, text.find(L'\0')));
  }

  const VS_FIXEDFILEINFO& Numbers() const {
    return *static_cast<const VS_FIXEDFILEINFO*>(Query(L"\\").first);
  }

 private:
  std::pair<const void*, UINT> Query(const std::wstring& path) const {
    const auto query =
        VersionFunction<BOOL WINAPI(const void*, LPCWSTR, void**, UINT*)>("VerQueryValueW");
    void* value = nullptr;
    UINT length = 0;
    if (!query(mBytes.data(), path.c_str(), &value, &length) || !value) {
      throw std::runtime_error("the version information lacks what was asked for");
    }
    return {value, length};
  }

  std::string mBytes;
};

/// What follows the program's own path. The path is read as Windows reads it: up to the next quote
/// where it begins with one, otherwise up to the first blank.
std::wstring_view WithoutProgram(std::wstring_view line) {
  constexpr std::wstring_view kBlanks = L" \t";
  const std::size_t end = line.starts_with(L'"') ? line.find(L'"', 1) : line.find_first_of(kBlanks);
  if (end == std::wstring_view::npos) return {};
  line.remove_prefix(line.starts_with(L'"') ? end + 1 : end);
  // A quoted path may go on behind its quote: "C:\a"b.exe is one word.
  line.remove_prefix(std::min(line.find_first_of(kBlanks), line.size()));
  line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
  return line;
}

}  // namespace

std::wstring ProgramFile() {
  std::wstring path(kLongestPath, L'\0');
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), kLongestPath);
  if (length == 0) throw std::runtime_error("the program does not know its file");
  path.resize(length);
  return path;
}

std::string ProgramFolder() {
  const std::wstring file = ProgramFile();
  const std::wstring folder = file.substr(0, file.rfind(L'\\'));
  return Utf8Text(folder.ends_with(L':') ? folder + L'\\' : folder);
}

std::string ProgramName() {
  const std::wstring file = ProgramFile();
  const std::wstring name = file.substr(file.rfind(L'\\') + 1);
  return Utf8Text(name.substr(0, name.rfind(L'.')));
}

std::string CompanyName() { return VersionInformation().Text(L"CompanyName"); }

std::string ProductName() { return VersionInformation().Text(L"ProductName"); }

int MajorVersion() { return HIWORD(VersionInformation().Numbers().dwFileVersionMS); }

std::string CommandLineArguments() { return Utf8Text(WithoutProgram(GetCommandLineW())); }

}  // namespace platform
