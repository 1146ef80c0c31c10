// Roles in the page for assistive technology.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <webkit2/webkit2.h>

namespace platform {

/// Presents the tables of all pages in views with this manager as lists, each named by the heading
/// above it. A box has the text of its row's third cell as description, or without one the heading.
void AddPageRoles(WebKitUserContentManager* manager);

}  // namespace platform
