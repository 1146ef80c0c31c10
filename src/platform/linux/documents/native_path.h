// Paths as the core writes them (UTF-8, joined with "\") to paths as Linux knows them, and back.
// A back end turns a path itself, so that no module sees a "/".
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Whether two names are the same where letter case tells nothing apart, as under Windows.
bool SameIgnoringCase(std::string_view left, std::string_view right);

/// The native path of what the core names. Where nothing stands there as written, each component is
/// matched without regard to letter case, the first in byte order when several match; from the
/// first component that matches nothing on, the path is kept as written. So
/// "\home\me\.wine\drive_c\programdata" finds ".../drive_c/ProgramData".
/// Throws Unsupported for a path with a NUL, which would be cut there.
std::string NativePath(const std::string& corePath);

/// The same path as the core writes it. A "\" in a native name cannot be told apart from a
/// separator afterwards: such a folder is not reachable for the core.
std::string CorePath(const std::string& nativePath);

}  // namespace platform
