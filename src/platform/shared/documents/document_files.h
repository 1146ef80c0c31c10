// The files of documents, as each back end reads and replaces them. Paths are as the core writes
// them.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

/// The bytes of a regular file. Throws for anything else that stands there (a pipe would hold the
/// program up), for a file longer than `limit` bytes, and where it cannot be read.
std::string ReadDocument(const std::string& path, std::size_t limit);

/// Replaces the file as a whole or not at all; a link in its place is replaced and not followed.
/// Throws when the folder is missing or cannot be written, or a folder stands there.
void ReplaceDocument(const std::string& path, std::string_view bytes);

}  // namespace platform
