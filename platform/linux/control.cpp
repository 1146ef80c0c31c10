// The handle on a control: what all kinds share. What a kind has of its own is in control_kinds.cpp
// and web_view.cpp.
//
// SPDX-License-Identifier: MIT
#include "platform/control.h"

#include <stdexcept>
#include <utility>

#include "platform/linux/control_impl.h"

namespace platform {
namespace {

[[noreturn]] void Lacks(const Control::Impl& control, const std::string& property) {
  throw std::logic_error("a " + control.kind + " has no " + property);
}

float CheckedSize(float twips) {
  // The comparison is written so that a number that is none is refused too.
  if (!(twips >= 0)) throw std::invalid_argument("a size cannot be negative");
  return twips;
}

}  // namespace

Control::Impl::Impl(std::string kind, std::string name, GtkWidget* fresh)
    : kind(std::move(kind)), name(std::move(name)), mWidget(GRef<GtkWidget>::Share(fresh)) {
  gtk_widget_set_name(fresh, this->name.c_str());
}

std::string Control::Impl::Caption() const { Lacks(*this, "Caption"); }
void Control::Impl::SetCaption(const std::string&) { Lacks(*this, "Caption"); }
void Control::Impl::SetFont(const Font&) { Lacks(*this, "Font"); }
void Control::Impl::SetRightToLeft(bool) { Lacks(*this, "RightToLeft"); }
void Control::Impl::OnClick(std::function<void()>&&) { Lacks(*this, "Click"); }

bool Control::Impl::TakeFocus(GtkDirectionType direction) {
  return gtk_widget_child_focus(Widget(), direction) != FALSE;
}

void Control::Impl::End() {
  mMover = nullptr;
  mWidget = {};
}

void Control::Impl::Move(const Place& place) {
  Widget();
  mPlace = place;
  if (mMover) mMover();
}

std::string Control::Kind() const {
  mImpl->Widget();
  return mImpl->kind;
}

std::string Control::Name() const {
  mImpl->Widget();
  return mImpl->name;
}

std::string Control::Tag() const {
  mImpl->Widget();
  return {};
}

std::string Control::Caption() const {
  mImpl->Widget();
  return mImpl->Caption();
}

void Control::SetCaption(const std::string& caption) {
  mImpl->Widget();
  mImpl->SetCaption(caption);
}

std::string Control::ToolTipText() const {
  const GMemory<char> text(gtk_widget_get_tooltip_text(mImpl->Widget()));
  return TextOf(text.get());
}

void Control::SetToolTipText(const std::string& text) {
  gtk_widget_set_tooltip_text(mImpl->Widget(), text.empty() ? nullptr : text.c_str());
}

bool Control::Enabled() const { return gtk_widget_get_sensitive(mImpl->Widget()); }

void Control::SetEnabled(bool enabled) { gtk_widget_set_sensitive(mImpl->Widget(), enabled); }

void Control::SetFont(const Font& font) {
  mImpl->Widget();
  mImpl->SetFont(font);
}

void Control::SetRightToLeft(bool rightToLeft) {
  mImpl->Widget();
  mImpl->SetRightToLeft(rightToLeft);
}

float Control::Left() const {
  mImpl->Widget();
  return mImpl->Where().left;
}

float Control::Top() const {
  mImpl->Widget();
  return mImpl->Where().top;
}

float Control::Width() const {
  mImpl->Widget();
  return mImpl->Where().width;
}

float Control::Height() const {
  mImpl->Widget();
  return mImpl->Where().height;
}

void Control::SetLeft(float twips) {
  Place place = mImpl->Where();
  place.left = twips;
  mImpl->Move(place);
}

void Control::SetTop(float twips) {
  Place place = mImpl->Where();
  place.top = twips;
  mImpl->Move(place);
}

void Control::SetWidth(float twips) {
  Place place = mImpl->Where();
  place.width = CheckedSize(twips);
  mImpl->Move(place);
}

void Control::SetHeight(float twips) {
  Place place = mImpl->Where();
  place.height = CheckedSize(twips);
  mImpl->Move(place);
}

void Control::BringToFront() {
  GtkWidget* widget = mImpl->Widget();
  if (gtk_widget_get_has_window(widget)) {
    if (GdkWindow* window = gtk_widget_get_window(widget)) gdk_window_raise(window);
    return;
  }
  // Widgets without a window of their own are painted in the order in which they were put in.
  GtkWidget* parent = gtk_widget_get_parent(widget);
  if (!parent) return;
  gtk_container_remove(GTK_CONTAINER(parent), widget);
  gtk_container_add(GTK_CONTAINER(parent), widget);
  mImpl->Move(mImpl->Where());
}

std::vector<ContainerItem> Control::Items() const {
  mImpl->Widget();
  Lacks(*mImpl, "Items");
}

void Control::OnClick(std::function<void()> handler) {
  mImpl->Widget();
  mImpl->OnClick(std::move(handler));
}

}  // namespace platform
