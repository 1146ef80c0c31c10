// What both peers on Windows share: waiting, and the promises that the system does not keep.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <span>
#include <string>

#include "platform/window/event_loop.h"

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

/// A promise that is not kept here, and what happens instead; docs/windows.md lists them.
struct NotKept {
  const char* name;  // "Suite.Case"
  bool onlyOnWine;
  const char* instead;
};

inline bool IsWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

/// "Suite.Case" of the running case.
inline std::string RunningCase() {
  const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
  return std::string(test->test_suite_name()) + "." + test->name();
}

/// Ends the running case as skipped, with its reason, where it is one of these.
inline void SkipNotKept(std::span<const NotKept> promises) {
  for (const NotKept& promise : promises) {
    if (promise.name == RunningCase() && (IsWine() || !promise.onlyOnWine)) {
      GTEST_SKIP() << promise.instead;
    }
  }
}

}  // namespace peer
