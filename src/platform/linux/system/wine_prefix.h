// The Wine prefix that the Windows side of the product lives in: where it is, and where the paths
// of its programs lead.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace platform {

/// The native path of the prefix: $WINEPREFIX, else the prefix that the program file is in, else
/// ~/.wine. Absent if it has no drive_c. A $WINEPREFIX without one is not replaced by another,
/// since Wine would not look elsewhere either.
std::optional<std::string> WinePrefix();

/// What Wine names the user's profile folder after: $USER, else the login name, without a domain.
std::string WineUserName();

/// The native path of `path`, which may name a drive (`C:\Tools\reader.exe`), as Wine maps drives.
/// Without a prefix, Z: is the root of the system as Wine makes it, and other drives throw.
std::string NativePathOfWindowsPath(const std::string& path);

}  // namespace platform
