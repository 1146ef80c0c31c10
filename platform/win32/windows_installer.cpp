// Windows Installer, by its automation object.
//
// SPDX-License-Identifier: MIT
#include "platform/windows_installer.h"

#include "core/attempt.h"
#include "platform/win32/automation.h"
#include "platform/win32/com.h"

namespace platform {
namespace {

ComPtr<IDispatch> NewInstaller() {
  EnterApartment();
  CLSID classId;
  Check(CLSIDFromProgID(L"WindowsInstaller.Installer", &classId));
  return CreateObject<IDispatch>(classId);
}

}  // namespace

struct WindowsInstaller::Impl {
  ComPtr<IDispatch> installer = NewInstaller();
};

WindowsInstaller::WindowsInstaller() : mImpl(std::make_unique<Impl>()) {}

WindowsInstaller::~WindowsInstaller() = default;

std::optional<std::string> WindowsInstaller::ProductInfo(const std::string& productCode,
                                                         const std::string& property) const {
  return core::AttemptOr(std::optional<std::string>(), [&] {
    Variant code{WideText(productCode)}, name{WideText(property)}, answer;
    GetMember(mImpl->installer, L"ProductInfo", {&code, &name}, answer);
    return std::optional(answer.Utf8());
  });
}

}  // namespace platform
