// The failure observer of the fuzz targets: a programming error ends the run, and is found so.
//
// SPDX-License-Identifier: MIT
#include <stdexcept>

#include "core/attempt.h"
#include "tests/fuzz/target.h"

namespace core {

void ObserveFailure(const std::source_location&) noexcept {
  try {
    throw;
  } catch (const std::logic_error&) {
    fuzz::Require(false);
  } catch (...) {
    // Expected.
  }
}

}  // namespace core
