// Whole files, read and replaced. Paths are native here; the interface's functions turn them.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

bool IsRegularFile(const std::string& nativePath);

/// The bytes of a regular file. Throws std::runtime_error for anything else that stands there (a
/// pipe would hold the program up), for a file longer than `limit`, and where it cannot be read.
std::string ReadRegularFile(const std::string& nativePath, std::size_t limit);

/// The first bytes of a regular file, at most `count`. Throws as above.
std::string FirstBytes(const std::string& nativePath, std::size_t count);

/// Replaces the file as a whole or not at all, by a new file beside it that is then given its name.
/// A symbolic link in its place is replaced and not followed, so that a link planted in a folder
/// that others may write to leads nowhere. `mode` is as for open(2), whatever the replaced file's
/// was: the umask still applies. Throws std::runtime_error when the folder is missing or cannot be
/// written, or a folder stands there.
void ReplaceFile(const std::string& nativePath, std::string_view bytes, int mode);

}  // namespace platform
