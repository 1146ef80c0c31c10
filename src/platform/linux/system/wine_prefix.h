// The Wine prefix that the Windows side of the product lives in: where it is, and where the paths
// of its programs lead.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace platform {

/// The native path of the prefix: $WINEPREFIX, else ~/.wine. Absent when there is none, which its
/// drive_c tells; a $WINEPREFIX that leads nowhere is not made up for by ~/.wine, since Wine itself
/// would not look there either.
std::optional<std::string> WinePrefix();

/// What Wine names the user's profile folder after: $USER, else the login name.
std::string WineUserName();

/// The native path of `path`, which may name a drive (`C:\Tools\reader.exe`), as Wine maps drives.
/// Without a prefix, Z: is the root of the system as Wine makes it, and other drives throw.
std::string NativePathOfWindowsPath(const std::string& path);

}  // namespace platform
