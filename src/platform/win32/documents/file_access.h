// Whole files, read and replaced. Paths are as the core writes them, which is as Windows does.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

/// The path for the functions of Windows. One that is too long for the old limit of 260 characters
/// gets the mark that lifts the limit, which every version knows. Throws Unsupported for
/// a path with a NUL, which would be cut there.
std::wstring SystemPath(const std::string& path);

bool IsRegularFile(const std::wstring& path);
bool IsFolder(const std::wstring& path);

/// The bytes of a regular file. Throws std::runtime_error for anything else that stands there (a
/// pipe would hold the program up), for a file longer than `limit`, and where it cannot be read.
std::string ReadRegularFile(const std::wstring& path, std::size_t limit);

/// Replaces the file as a whole or not at all, by a new file beside it that is then given its name.
/// A symbolic link in its place is replaced and not followed, so that a link planted in a folder
/// that others may write to leads nowhere. Throws std::runtime_error when the folder is missing or
/// cannot be written, or a folder stands there.
void ReplaceWholeFile(const std::wstring& path, std::string_view bytes);

}  // namespace platform
