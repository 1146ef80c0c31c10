// What the cases about windows share.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/window/dialogs.h"
#include "platform/window/event_loop.h"
#include "platform/window/form.h"
#include "platform/window/web_browser.h"
#include "tests/contract/window_driver.h"

class WindowCase : public testing::Test {
 protected:
  WindowCase() { peer::Begin(); }

  static constexpr float kWidth = 6000;
  static constexpr float kHeight = 4500;

  /// A form named "form", 6000 by 4500 twips.
  static std::unique_ptr<platform::Form> NewForm() {
    return std::make_unique<platform::Form>("form", kWidth, kHeight);
  }

  /// Shows the form and waits until it is seen.
  static void ShowAndSee(platform::Form& form) {
    form.Show();
    ASSERT_TRUE(peer::RunUntil([] { return peer::IsSeen("form"); }));
  }
};
