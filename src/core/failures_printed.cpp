// The failure observer of a debug build: prints programming errors, and with VELOR_LIST_FAILURES in
// the environment expected failures too.
//
// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "core/attempt.h"

namespace core {
namespace {

void Print(const std::source_location& where, const char* kind, const char* text) {
  std::cerr << where.file_name() << ':' << where.line() << ": " << kind << ": " << text << '\n';
}

}  // namespace

void ObserveFailure(const std::source_location& where) noexcept {
  try {
    throw;
  } catch (const std::logic_error& error) {
    Print(where, "programming error", error.what());
  } catch (const std::exception& error) {
    if (std::getenv("VELOR_LIST_FAILURES")) Print(where, "expected failure", error.what());
  } catch (...) {
    // Expected too, without a text.
  }
}

}  // namespace core
