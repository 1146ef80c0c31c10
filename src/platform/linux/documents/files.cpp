// The file services of platform/documents/files.h, and the files of documents.
//
// SPDX-License-Identifier: MIT
#include "platform/documents/files.h"

#include <glib.h>
#include <glib/gstdio.h>
#include <unicode/ustring.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "core/attempt.h"
#include "platform/linux/documents/file_access.h"
#include "platform/linux/documents/native_path.h"
#include "platform/linux/g_ref.h"
#include "platform/shared/documents/document_files.h"

namespace platform {
namespace {

static_assert(std::endian::native == std::endian::little, "units are written as they are kept");

// With the mark that says so. Throws for what is no UTF-8.
std::u16string MarkedUtf16(const std::string& text) {
  constexpr char16_t kByteOrderMark = 0xFEFF;
  std::u16string wide(1 + text.size(), kByteOrderMark);  // never more units than bytes
  std::int32_t length = 0;
  UErrorCode code = U_ZERO_ERROR;
  u_strFromUTF8(wide.data() + 1, static_cast<std::int32_t>(text.size()), &length, text.data(),
                static_cast<std::int32_t>(text.size()), &code);
  if (U_FAILURE(code)) throw std::runtime_error(u_errorName(code));
  wide.resize(1 + static_cast<std::size_t>(length));
  return wide;
}

}  // namespace

bool FileExists(const std::string& path) {
  return core::AttemptOr(false, [&] { return IsRegularFile(NativePath(path)); });
}

void CreateFolder(const std::string& path) {
  const std::string folder = NativePath(path);
  // For the person alone, as settings and the page are: whoever may write to the folder may put
  // another page in the place of ours. What tells success is the folder, not the call: it may have
  // been there.
  constexpr int kOnlyForItsOwner = 0700;
  g_mkdir(folder.c_str(), kOnlyForItsOwner);
  if (!g_file_test(folder.c_str(), G_FILE_TEST_IS_DIR)) {
    throw std::runtime_error("the folder " + folder + " could not be created");
  }
}

void WriteUtf16File(const std::string& path, const std::string& text) {
  constexpr int kOnlyForItsOwner = 0600;
  const std::u16string wide = MarkedUtf16(text);
  const std::string_view bytes(reinterpret_cast<const char*>(wide.data()),
                               wide.size() * sizeof(char16_t));
  ReplaceFile(NativePath(path), bytes, kOnlyForItsOwner);
}

std::string ReadDocument(const std::string& path, std::size_t limit) {
  return ReadRegularFile(NativePath(path), limit);
}

void ReplaceDocument(const std::string& path, std::string_view bytes) {
  // As a new file usually has it; the umask makes it narrower.
  constexpr int kOrdinaryFile = 0666;
  ReplaceFile(NativePath(path), bytes, kOrdinaryFile);
}

}  // namespace platform
