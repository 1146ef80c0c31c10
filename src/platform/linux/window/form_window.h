// What the other files of this folder may know of the forms there are.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// The window of a form that can be seen; null when there is none.
GtkWindow* VisibleFormWindow();

}  // namespace platform
