// Which folder, which ini file, which key. Policy only: folders and ini files themselves are read
// by the platform. Paths are joined with "\" and kept without one at their end.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace modPath {

/// The user's roaming application data, by the shell's identifier (CSIDL_APPDATA).
inline constexpr std::int32_t kUserApplicationData = 26;
/// The application data of all users (CSIDL_COMMON_APPDATA).
inline constexpr std::int32_t kCommonApplicationData = 35;

/// Set by InitDataFolders; empty before.
extern std::string gSettingsPath;
/// Built by the same steps as gSettingsPath and so equal to it.
extern std::string gUserSettingsPath;
/// "\Common" at the company level.
extern std::string gCommonPath;
/// Whether settings live beside the program ("\Settings") instead of in the user's data.
extern bool gPortable;

/// The path of a shell folder; empty when the shell does not know it.
std::string GetSpecialFolderPath(std::int32_t csidl);

/// The folder that the program file lies in; a program at a drive's root is in "C:".
std::string GetAppFolder();

/// The folder of the installed edition of the sibling product Parvix, where its "Settings.xml" is.
///
/// From C:\Program Files\Velor Software\Velor Voice Setup the editions are looked for at
/// C:\Program Files\Velor Software\Parvix Pro, then "Parvix Plus", then "Parvix Standard". For Pro,
/// and where there is none, the answer is the bare "...\Parvix " with its blank: kept as it is,
/// since an edition Pro alone must not switch settings to the installed mode.
std::string GetParvixEditionFolder();

/// Decides where settings live, sets the globals above and creates the folders on the way. An empty
/// argument is looked up in section "ApplicationDataPath" of the program's own ini, then in the
/// program's version information.
void InitDataFolders(const std::string& company, const std::string& applicationName,
                     const std::string& version);

/// Calls InitDataFolders for Parvix and answers the path of its "config.ini".
std::string GetParvixConfigPath();

/// The hand-over to the installer program: the installer looks for both files here. The folder
/// "Velor Software" is not created: it comes with the installation, and the rights on it with it.
std::string GetQueuePath();
std::string GetProductsPath();

/// A value of the file `name`.ini in gSettingsPath, not trimmed; `fallback` when it is absent or
/// empty. At most 256 bytes.
std::string ReadSettingsIni(const std::string& name, const std::string& section,
                            const std::string& key, const std::string& fallback);

/// A value, trimmed, of the program's own ini, which lies beside the program file and is named
/// after it; `fallback` (trimmed) when it is absent. At most 255 bytes.
std::string ReadAppIni(const std::string& section, const std::string& key,
                       const std::string& fallback);

}  // namespace modPath
