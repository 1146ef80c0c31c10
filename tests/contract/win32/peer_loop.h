// What both peers on Windows share: waiting, and knowing which case runs.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>

#include "platform/event_loop.h"

namespace peer {

/// Handles events until `condition` holds; false when it does not within the time.
inline bool RunEventsUntil(const std::function<bool()>& condition,
                           std::chrono::milliseconds deadline) {
  constexpr DWORD kLookEvery = 10;  // some conditions change without an event
  const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(deadline.count());
  while (!condition()) {
    if (GetTickCount64() >= end) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kLookEvery, QS_ALLINPUT);
    platform::ProcessPendingEvents();
  }
  return true;
}

/// "Suite.Case" of the running case.
inline std::string RunningCase() {
  const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
  return std::string(test->test_suite_name()) + "." + test->name();
}

}  // namespace peer
