// One step of a behaviour: when it fails it is skipped, and the next one goes on.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <functional>
#include <source_location>
#include <utility>

namespace core {

/// Called for each step that failed, while its exception is being handled. `where` is the Attempt.
/// Defined once in each program, chosen by the linker: the shipped program does nothing, a debug
/// build prints programming errors, a test program fails the running case for them.
///
/// A std::logic_error is a programming error, such as the use of a control after its form was
/// destroyed. Every other exception is expected: something was not to be had (platform/errors.h).
void ObserveFailure(const std::source_location& where) noexcept;

/// Runs the step; true when it ran to its end. What a failed step had changed stays changed.
///
/// The user is not notified: the program has two messages, and a failed step is neither. Only
/// exceptions are stopped, so what a step calls must throw rather than crash. Callbacks of the
/// system run in an Attempt too, since no exception may leave them.
///
///     Attempt([&] { voice.Size = MegabytesFromBytes(text("size")); });
///     // no <size>, or not a number: Size keeps its value
template <std::invocable Step>
bool Attempt(Step&& step,
             const std::source_location where = std::source_location::current()) noexcept {
  try {
    std::invoke(std::forward<Step>(step));
    return true;
  } catch (...) {
    ObserveFailure(where);
    return false;
  }
}

/// The result of the step, or `fallback` when the step failed.
template <class T, std::invocable Step>
T AttemptOr(T fallback, Step&& step,
            const std::source_location where = std::source_location::current()) noexcept {
  try {
    return std::invoke(std::forward<Step>(step));
  } catch (...) {
    ObserveFailure(where);
    return fallback;
  }
}

}  // namespace core
