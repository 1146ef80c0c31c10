// The files of documents, by the system's own means.
//
// SPDX-License-Identifier: MIT
#include "platform/shared/documents/document_files.h"

#include "platform/linux/documents/file_access.h"
#include "platform/linux/documents/native_path.h"

namespace platform {

std::string ReadDocument(const std::string& path, std::size_t limit) {
  return ReadRegularFile(NativePath(path), limit);
}

void ReplaceDocument(const std::string& path, std::string_view bytes) {
  // As a new file usually has it; the umask makes it narrower.
  constexpr int kOrdinaryFile = 0666;
  ReplaceFile(NativePath(path), bytes, kOrdinaryFile);
}

}  // namespace platform
