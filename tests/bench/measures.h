// The measures, each with its references.
//
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/bench/surroundings.h"

namespace bench {

/// `prefix` outlives them.
void RegisterCataloguePage(const Prefix& prefix);
void RegisterTexts();

}  // namespace bench
