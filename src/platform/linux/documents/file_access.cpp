// Reading and replacing whole files.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/documents/file_access.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "core/attempt.h"

namespace platform {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : mNumber(number) {}
  Descriptor(Descriptor&& other) noexcept : mNumber(std::exchange(other.mNumber, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() {
    if (mNumber >= 0) close(mNumber);
  }
  int Number() const { return mNumber; }

 private:
  int mNumber;
};

void CheckErrno(bool succeeded, const std::string& path) {
  if (!succeeded) throw std::system_error(errno, std::generic_category(), path);
}

std::size_t ReadSome(int descriptor, char* buffer, std::size_t size, const std::string& path) {
  ssize_t count = 0;
  do {
    count = read(descriptor, buffer, size);
  } while (count < 0 && errno == EINTR);
  CheckErrno(count >= 0, path);
  return static_cast<std::size_t>(count);
}

Descriptor OpenRegularFile(const std::string& path) {
  // Without O_NONBLOCK, opening a pipe that nobody writes to would never return.
  Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  CheckErrno(file.Number() >= 0, path);
  struct stat status{};
  CheckErrno(fstat(file.Number(), &status) == 0, path);
  if (!S_ISREG(status.st_mode)) throw std::runtime_error(path + " is not a regular file");
  return file;
}

/// The bytes are on the disk when it returns: a file renamed before may be empty after a power cut.
void WriteAll(const Descriptor& file, std::string_view bytes, const std::string& path) {
  while (!bytes.empty()) {
    const ssize_t count = write(file.Number(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    CheckErrno(count >= 0, path);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  CheckErrno(fsync(file.Number()) == 0, path);
}

}  // namespace

bool IsRegularFile(const std::string& nativePath) {
  struct stat status{};
  return stat(nativePath.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::string ReadRegularFile(const std::string& nativePath, std::size_t limit) {
  const Descriptor file = OpenRegularFile(nativePath);
  // Until its end, whatever length it said: it may grow meanwhile.
  std::string bytes;
  char buffer[64 * 1024];
  while (const std::size_t count = ReadSome(file.Number(), buffer, sizeof buffer, nativePath)) {
    if (count > limit - bytes.size()) throw std::runtime_error(nativePath + " is too long");
    bytes.append(buffer, count);
  }
  return bytes;
}

std::string FirstBytes(const std::string& nativePath, std::size_t count) {
  const Descriptor file = OpenRegularFile(nativePath);
  std::string bytes(count, '\0');
  bytes.resize(ReadSome(file.Number(), bytes.data(), count, nativePath));
  return bytes;
}

void ReplaceFile(const std::string& nativePath, std::string_view bytes, int mode) {
  // Not g_file_set_contents_full: its newer versions keep the mode of the file that is replaced.
  std::string fresh = nativePath + ".XXXXXX";
  const Descriptor file(g_mkstemp_full(fresh.data(), O_WRONLY | O_CLOEXEC, mode));
  CheckErrno(file.Number() >= 0, fresh);
  const bool replaced = core::Attempt([&] {
    WriteAll(file, bytes, fresh);
    CheckErrno(rename(fresh.c_str(), nativePath.c_str()) == 0, nativePath);
  });
  if (replaced) return;
  unlink(fresh.c_str());
  throw std::runtime_error(nativePath + " was not replaced");
}

}  // namespace platform
