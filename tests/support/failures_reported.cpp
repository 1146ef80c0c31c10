// The failure observer of the test programs: a programming error fails the running case.
//
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <stdexcept>

#include "core/attempt.h"

namespace core {

void ObserveFailure(const std::source_location& where) noexcept {
  try {
    throw;
  } catch (const std::logic_error& error) {
    ADD_FAILURE_AT(where.file_name(), static_cast<int>(where.line())) << error.what();
  } catch (...) {
    // Expected.
  }
}

}  // namespace core
