// See voice_names.h.
//
// SPDX-License-Identifier: MIT
#include "catalogue/voice_names.h"

#include <string_view>

#include "core/text.h"

namespace {

constexpr auto kAbsent = std::string::npos;

/// Drops everything up to and including the first `mark`; nothing without one.
void KeepAfter(std::string& name, std::string_view mark) {
  const auto at = name.find(mark);
  if (at != kAbsent) name.erase(0, at + mark.size());
}

/// Drops the first `mark` and everything after it; whether there was one.
bool KeepBefore(std::string& name, std::string_view mark) {
  const auto at = name.find(mark);
  if (at == kAbsent) return false;
  name.erase(at);
  return true;
}

}  // namespace

std::string CleanVoiceName(std::string& name) {
  if (KeepBefore(name, "22k_HQ")) {
    // The quality tag is all there is to cut; a blank before it stays.
  } else if (name.find(") ") != kAbsent) {
    KeepAfter(name, ") ");
  } else if (KeepBefore(name, " - Velor")) {
    KeepAfter(name, " ");
  } else {
    KeepAfter(name, " ");
    KeepBefore(name, "_");
    KeepAfter(name, " ");
  }
  return name.empty() ? "Daniel" : name;
}

std::string WithoutVendorWords(std::string name) {
  for (const std::string_view word : {" Voice", "Vocalizer ", "Expressive ", "RealSpeak "}) {
    name = core::ReplaceAll(std::move(name), word, "");
  }
  return name;
}
