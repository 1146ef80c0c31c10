// Expected failures: something was not to be had, and the step that needed it is skipped. They are
// all std::runtime_error; a std::logic_error is a mistake of our own code (see core/attempt.h).
//
// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

namespace platform {

/// The system, or a kind of control, has no such property, or does not accept the value.
struct Unsupported : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// There is no such element, file or folder.
struct NotFound : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// It exists, but not now: a page that is still loading, a document that holds nothing.
struct Unavailable : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace platform
