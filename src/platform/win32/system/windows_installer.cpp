// Windows Installer, by its automation object.
//
// SPDX-License-Identifier: MIT
#include "platform/system/windows_installer.h"

#include "core/attempt.h"
#include "platform/win32/automation.h"
#include "platform/win32/com.h"

namespace platform {
namespace {

CLSID InstallerClass() {
  EnterApartment();
  CLSID classId;
  Check(CLSIDFromProgID(L"WindowsInstaller.Installer", &classId));
  return classId;
}

}  // namespace

struct WindowsInstaller::Impl {
  /// Made at the first question, when the window is there and has been for a while: loading Windows
  /// Installer and the nine libraries that it brings takes longer than any other step of the start.
  const ComPtr<IDispatch>& Installer() {
    if (!installer) installer = CreateObject<IDispatch>(classId);
    return installer;
  }

  CLSID classId = InstallerClass();
  ComPtr<IDispatch> installer;
};

WindowsInstaller::WindowsInstaller() : mImpl(std::make_unique<Impl>()) {}

WindowsInstaller::~WindowsInstaller() = default;

std::optional<std::string> WindowsInstaller::ProductInfo(const std::string& productCode,
                                                         const std::string& property) const {
  return core::AttemptOr(std::optional<std::string>(), [&] {
    Variant code{WideText(productCode)}, name{WideText(property)}, answer;
    GetMember(mImpl->Installer(), L"ProductInfo", {&code, &name}, answer);
    return std::optional(answer.Utf8());
  });
}

}  // namespace platform
