// What the build decides. CMake writes the definitions (cmake/build_settings.cpp.in): one set for
// the program that is shipped, one for the twin that the demonstration and the tests run. The two
// differ in this object only, and nothing at run time changes any of it.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace core {

/// Host, and port where it is not 443, of the maker's download server.
extern const std::string_view kDownloadServer;

/// A PEM file whose certificates are trusted besides the system's store. Empty in the shipped
/// program, which trusts the system's store alone.
extern const std::string_view kAdditionalTrustedCa;

/// The program's version information, where no version resource holds it.
extern const std::string_view kCompanyName;
extern const std::string_view kProductName;
extern const int kMajorVersion;

}  // namespace core
