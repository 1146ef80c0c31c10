// Functions of the system that are looked up while the program runs: those that not every supported
// Windows has, and those of libraries that Windows would look for beside the program first.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// Looks libraries up in the system's folder only from now on, whoever asks. A Windows 7 without
/// the update that brought this goes on as it was; SystemFunction does not depend on it.
void TrustSystemLibrariesOnly();

/// Null when this system lacks the function or the library, which is taken from the system's folder
/// whatever lies beside the program.
void* FindSystemFunction(const std::wstring& library, const char* name);

/// The same with its type; throws where it is missing.
///
///     const auto open = SystemFunction<decltype(WinHttpOpen)>(L"winhttp.dll", "WinHttpOpen");
void* RequiredSystemFunction(const std::wstring& library, const char* name);

template <class Function>
Function* SystemFunction(const std::wstring& library, const char* name) {
  return reinterpret_cast<Function*>(RequiredSystemFunction(library, name));
}

template <class Function>
Function* OptionalSystemFunction(const std::wstring& library, const char* name) {
  return reinterpret_cast<Function*>(FindSystemFunction(library, name));
}

}  // namespace platform
