// Windows Installer in a Wine prefix: its registry files. They lag behind the running registry by
// seconds, and are read once: at the start of the program, as the installer's other readers do.
// What they say of products is installed_products.h's.
//
// SPDX-License-Identifier: MIT
#include "platform/system/windows_installer.h"

#include <stdexcept>

#include "platform/linux/documents/file_access.h"
#include "platform/linux/system/installed_products.h"
#include "platform/linux/system/registry_text.h"
#include "platform/linux/system/wine_prefix.h"

namespace platform {
namespace {

std::string PrefixOrThrow() {
  const std::optional<std::string> prefix = WinePrefix();
  if (!prefix) throw std::runtime_error("there is no Wine prefix, so no Windows Installer");
  return *prefix;
}

}  // namespace

struct WindowsInstaller::Impl {
  explicit Impl(const std::string& prefix) {
    products.ReadSystemFile(ReadRegularFile(prefix + "/system.reg", kRegistryFileLimit));
    // A prefix in which nobody has set anything has no file for it.
    const std::string userFile = prefix + "/user.reg";
    if (!IsRegularFile(userFile)) return;
    products.ReadUserFile(ReadRegularFile(userFile, kRegistryFileLimit));
  }

  InstalledProducts products;
};

WindowsInstaller::WindowsInstaller() : mImpl(std::make_unique<Impl>(PrefixOrThrow())) {}

WindowsInstaller::~WindowsInstaller() = default;

std::optional<std::string> WindowsInstaller::ProductInfo(const std::string& productCode,
                                                         const std::string& property) const {
  return mImpl->products.Property(productCode, property);
}

}  // namespace platform
