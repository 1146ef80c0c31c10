// The files of documents, by the system's own means.
//
// SPDX-License-Identifier: MIT
#include "platform/shared/documents/document_files.h"

#include "platform/win32/documents/file_access.h"

namespace platform {

std::string ReadDocument(const std::string& path, std::size_t limit) {
  return ReadRegularFile(SystemPath(path), limit);
}

void ReplaceDocument(const std::string& path, std::string_view bytes) {
  ReplaceWholeFile(SystemPath(path), bytes);
}

}  // namespace platform
