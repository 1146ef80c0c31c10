// The inside of a form's window, as a class of GTK's object system.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/window/form_area.h"

#include "core/attempt.h"
#include "platform/linux/signals.h"

namespace {

struct VelorFormArea {
  GtkFixed parent;
  platform::FormAreaOwner* owner;
};

struct VelorFormAreaClass {
  GtkFixedClass parent;
};

G_DEFINE_TYPE(VelorFormArea, velor_form_area, GTK_TYPE_FIXED)

VelorFormArea* Area(gpointer widget) { return static_cast<VelorFormArea*>(widget); }

/// The window may become as small as one likes: what does not fit is cut off.
void WantNothing(GtkWidget*, int* minimum, int* natural) { *minimum = *natural = 0; }

void Allocate(GtkWidget* widget, GtkAllocation* place) {
  gtk_widget_set_allocation(widget, place);
  core::Attempt([&] {
    if (auto* owner = Area(widget)->owner) owner->PlaceChildren(place->width, place->height);
  });
}

gboolean Focus(GtkWidget* widget, GtkDirectionType direction) {
  if (direction != GTK_DIR_TAB_FORWARD && direction != GTK_DIR_TAB_BACKWARD)
    return GTK_WIDGET_CLASS(velor_form_area_parent_class)->focus(widget, direction);
  return core::AttemptOr(false, [&] {
    auto* owner = Area(widget)->owner;
    return owner && owner->MoveFocus(direction);
  });
}

void velor_form_area_class_init(VelorFormAreaClass* type) {
  GtkWidgetClass* widget = GTK_WIDGET_CLASS(type);
  widget->get_preferred_width = WantNothing;
  widget->get_preferred_height = WantNothing;
  widget->size_allocate = Allocate;
  widget->focus = Focus;
}

void velor_form_area_init(VelorFormArea* area) { area->owner = nullptr; }

}  // namespace

namespace platform {

GtkWidget* NewFormArea(FormAreaOwner* owner) {
  auto* area = static_cast<VelorFormArea*>(g_object_new(velor_form_area_get_type(), nullptr));
  area->owner = owner;
  return GTK_WIDGET(area);
}

void ForgetFormAreaOwner(GtkWidget* area) { Area(area)->owner = nullptr; }

}  // namespace platform
