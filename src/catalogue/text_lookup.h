// How this module gets its texts without knowing languages.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

/// The text to show for a key, which is the English text itself.
using TextLookup = std::function<std::string(const std::string& key)>;
