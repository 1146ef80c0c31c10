// See layout.h. The order matters: later lines read what earlier ones set.
//
// SPDX-License-Identifier: MIT
#include "app/layout.h"

#include "core/attempt.h"

using core::Attempt;

namespace {

constexpr float kMargin = 90;  // twips around button and label
constexpr float kStrip = 180;  // twips that the button's row is higher than the button

}  // namespace

void PlaceControls(WindowControls& controls, float clientWidth, float clientHeight, float pixelX,
                   float pixelY) {
  auto& picLogo = controls.picLogo;
  auto& webOptions = controls.webOptions;
  auto& cmdInstall = controls.cmdInstall;
  auto& lblStatus = controls.lblStatus;
  // Two pixels of the browser go beyond the top edge and under the logo: its own border is there.
  const float bleedX = 2 * pixelX;
  const float bleedY = 2 * pixelY;

  Attempt([&] { webOptions.SetTop(0 - bleedY); });
  Attempt([&] { picLogo.SetLeft(0); });
  Attempt([&] { webOptions.SetLeft(picLogo.Width() - bleedX); });
  Attempt([&] { webOptions.SetWidth(clientWidth - picLogo.Width() + bleedX); });
  const bool browserFits =
      Attempt([&] { webOptions.SetHeight(clientHeight - cmdInstall.Height() - kStrip + bleedY); });
  Attempt([&] { picLogo.SetTop(0); });
  if (browserFits) Attempt([&] { picLogo.SetHeight(webOptions.Height() - bleedY); });
  Attempt([&] { cmdInstall.SetTop(clientHeight - cmdInstall.Height() - kMargin); });
  Attempt([&] { cmdInstall.SetLeft(clientWidth - cmdInstall.Width() - kMargin); });
  Attempt([&] { lblStatus.SetLeft(kMargin); });
  Attempt([&] { lblStatus.SetTop(cmdInstall.Top()); });
}
