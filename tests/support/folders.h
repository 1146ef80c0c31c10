// Folders of this checkout and its build, for tests. They are set in one source, which the build
// configures, so that no other object depends on where the checkout is: a compiler cache shares
// them.
//
// SPDX-License-Identifier: MIT
#pragma once

namespace support {

/// Absolute paths of the host system, in UTF-8.
extern const char* const kSourceFolder;
extern const char* const kTestDataFolder;
/// The authority of the contract tests and its certificates; made by the build.
extern const char* const kContractCaFolder;

}  // namespace support
