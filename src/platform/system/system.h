// Small questions to the operating system.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// 10 for Windows 10 and 11, 6 for Windows Vista to 8.1. Throws when the system does not say.
int OperatingSystemMajorVersion();

/// The name of the country that the user's locale belongs to; empty when the locale names none.
std::string CountryName();

/// Registers window classes of the common controls: `recordSize` and `classes` are the two fields
/// of INITCOMMONCONTROLSEX. Does nothing where controls need no registration.
void InitCommonControls(std::uint32_t recordSize, std::uint32_t classes);

}  // namespace platform
