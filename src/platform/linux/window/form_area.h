// The inside of a form's window: a GTK container that leaves places and tab order to the form.
// GTK's own containers give a child at least the size that it asks for, and that may be more than
// the layout says.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// What the form answers to its area.
class FormAreaOwner {
 public:
  /// The area has this size now, in GTK's units: give every child its place.
  virtual void PlaceChildren(int width, int height) = 0;
  /// Moves the focus to the next child that takes it; false when there is none.
  virtual bool MoveFocus(GtkDirectionType direction) = 0;

 protected:
  ~FormAreaOwner() = default;
};

/// A floating container. It asks `owner` until it is told that there is none any more.
GtkWidget* NewFormArea(FormAreaOwner* owner);
void ForgetFormAreaOwner(GtkWidget* area);

}  // namespace platform
