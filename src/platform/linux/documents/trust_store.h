// What comes before downloads on Linux.
//
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/shared/documents/http_download.h"

namespace platform {

/// Reads the authorities that the system trusts, in a thread: some ten milliseconds that the
/// window's start need not wait for. Nothing else follows from it; a download that comes too early
/// waits.
void PrepareDownloads();

}  // namespace platform
