// What happens to a failing step: it is skipped, and the next one goes on. Standard library only.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <functional>
#include <utility>

namespace core {

/// Runs one step of a behaviour; true when it ran to its end.
///
/// A failure is reported to nobody. What the step changed before it failed stays changed. Only
/// exceptions are caught, so what a step calls must throw rather than crash (`.at()`, nodes that
/// throw when empty).
///
///     Attempt([&] { voice.Size = MegabytesFromBytes(text(kSize)); });
///     // no size, or not a number: Size keeps its value
template <std::invocable Step>
bool Attempt(Step&& step) noexcept {
  try {
    std::invoke(std::forward<Step>(step));
    return true;
  } catch (...) {
    return false;
  }
}

/// The step's answer, or `fallback` when the step failed.
template <class T, std::invocable Step>
T AttemptOr(T fallback, Step&& step) noexcept {
  try {
    return std::invoke(std::forward<Step>(step));
  } catch (...) {
    return fallback;
  }
}

}  // namespace core
