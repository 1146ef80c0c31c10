// The file that the process runs, as Windows spells it.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

std::wstring ProgramFile();

}  // namespace platform
