// The few file services that the program needs. Paths are UTF-8, joined with "\"; a back end turns
// them into its own. Where a system tells letter case apart, a name that is not found as written is
// matched without regard to it, since the same files are found so by the Windows program.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// Whether a normal file, not a folder, stands at `path`.
bool FileExists(const std::string& path);

/// Creates one folder; its parent must exist. A folder that exists already is success.
/// Throws when there is no such folder afterwards.
void CreateFolder(const std::string& path);

/// Replaces the file with `text` (UTF-8, line ends as they stand) in UTF-16 little-endian with a
/// byte-order mark. Throws when it cannot be written.
void WriteUtf16File(const std::string& path, const std::string& text);

}  // namespace platform
