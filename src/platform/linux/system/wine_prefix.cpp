// Finding the Wine prefix.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/system/wine_prefix.h"

#include <glib.h>

#include <stdexcept>
#include <string_view>

#include "platform/linux/documents/native_path.h"
#include "platform/system/program.h"

namespace platform {
namespace {

/// The folder above the drive_c that the program file is in; empty for a program elsewhere.
std::string PrefixOfProgram() {
  const std::string folder = NativePath(ProgramFolder()) + '/';
  const std::size_t drive = folder.rfind("/drive_c/");
  return drive == std::string::npos ? "" : folder.substr(0, drive);
}

std::string ConfiguredPrefix() {
  const char* configured = g_getenv("WINEPREFIX");
  if (configured && *configured) return configured;
  const std::string prefix = PrefixOfProgram();
  return prefix.empty() ? std::string(g_get_home_dir()) + "/.wine" : prefix;
}

bool IsFolder(const std::string& path) { return g_file_test(path.c_str(), G_FILE_TEST_IS_DIR); }

bool HasDrive(std::string_view path) {
  return path.size() >= 2 && g_ascii_isalpha(path.at(0)) && path.at(1) == ':';
}

// Without a "/" at its end.
std::string DriveRoot(char letter) {
  const std::string drive = std::string(1, g_ascii_tolower(letter)) + ':';
  if (const std::optional<std::string> prefix = WinePrefix()) {
    if (drive == "c:") return *prefix + "/drive_c";
    // A link to the folder that the drive stands for, for "z:" usually to /.
    std::string root = *prefix + "/dosdevices/" + drive;
    if (IsFolder(root)) return root;
  }
  if (drive == "z:") return "";
  throw std::runtime_error("there is no drive " + drive);
}

}  // namespace

std::optional<std::string> WinePrefix() {
  const std::string prefix = ConfiguredPrefix();
  if (!g_path_is_absolute(prefix.c_str()) || !IsFolder(prefix + "/drive_c")) return std::nullopt;
  return prefix;
}

std::string WineUserName() {
  const char* user = g_getenv("USER");
  const std::string name = user && *user ? user : g_get_user_name();
  return name.substr(name.find_last_of("\\/") + 1);
}

std::string NativePathOfWindowsPath(const std::string& path) {
  if (!HasDrive(path)) return NativePath(path);
  const std::string below = path.substr(2);
  if (!below.starts_with('\\') && !below.starts_with('/')) {
    throw std::runtime_error(path +
                             " is relative to a drive's current folder, which none has here");
  }
  return NativePath(CorePath(DriveRoot(path.front())) + below);
}

}  // namespace platform
