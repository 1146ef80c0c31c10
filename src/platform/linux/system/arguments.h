// How the entry point hands the program's arguments on to the promise CommandLineArguments; only
// entry points call it, before anything else does.
//
// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

/// Keeps the arguments after the program's own path, turned into UTF-8.
void SetArguments(int argc, char** argv);

}  // namespace platform
