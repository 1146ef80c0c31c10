// See clsVoice.h.
//
// SPDX-License-Identifier: MIT
#include "catalogue/clsVoice.h"

#include "core/attempt.h"
#include "core/text.h"

void clsVoice::SetProductCode(std::string_view code) {
  mProductCode = core::Trim(code);
  if (mProductCode.empty()) return;
  if (!mProductCode.starts_with('{')) mProductCode.insert(0, 1, '{');
  if (!mProductCode.ends_with('}')) mProductCode += '}';
}

InstallState clsVoice::IsInstalled(const platform::WindowsInstaller* installer) {
  if (mInstallState != InstallState::kUnknown) return mInstallState;
  if (mProductCode.empty() || installer == nullptr) return InstallState::kUnknown;
  // The version itself does not matter: a product that has one to tell is installed.
  const bool known = core::AttemptOr(
      false, [&] { return installer->ProductInfo(mProductCode, "VersionString").has_value(); });
  mInstallState = known ? InstallState::kInstalled : InstallState::kNotInstalled;
  return mInstallState;
}
