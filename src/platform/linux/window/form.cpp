// The top-level window: an absolute layout that keeps every control's edges on whole pixels.
//
// SPDX-License-Identifier: MIT
#include <gtk/gtk.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "platform/linux/signals.h"
#include "platform/linux/window/form_area.h"
#include "platform/linux/window/form_window.h"
#include "platform/linux/window/native_control.h"
#include "platform/linux/window/toolkit.h"
#include "platform/shared/window/event_queue.h"
#include "platform/shared/window/form_impl.h"

namespace platform {
namespace {

/// The windows that have not gone.
std::vector<GtkWindow*>& Windows() {
  static std::vector<GtkWindow*> windows;
  return windows;
}

int Units(double twips) { return static_cast<int>(std::lround(twips / TwipsPerUnit())); }

}  // namespace

GtkWindow* VisibleFormWindow() {
  for (GtkWindow* window : Windows()) {
    if (gtk_widget_get_visible(GTK_WIDGET(window))) return window;
  }
  return nullptr;
}

namespace {

class NativeForm final : public Form::Impl, FormAreaOwner {
 public:
  NativeForm(const std::string& name, float clientWidth, float clientHeight);
  ~NativeForm() override { NativeForm::DestroyNativeWindow(); }

  bool HasWindow() const override { return static_cast<bool>(mWindow); }
  float ClientWidth() const override { return static_cast<float>(mWidth * TwipsPerUnit()); }
  float ClientHeight() const override { return static_cast<float>(mHeight * TwipsPerUnit()); }
  bool IsMinimised() const override;
  void SetTitle(const std::string& title) override {
    gtk_window_set_title(Window(), title.c_str());
  }
  void Mirror(bool rightToLeft) override;
  std::shared_ptr<Control::Impl> MakeControl(const std::string& kind,
                                             const std::string& controlName) override;
  /// Several moves make one placing, which comes before the next picture of the window.
  void PlaceControl(Control::Impl&) override {
    if (!mPlacing) gtk_widget_queue_allocate(mArea.Get());
  }
  void Present() override;
  void Conceal() override { gtk_widget_hide(mWindow.Get()); }
  void DestroyNativeWindow() override;

 private:
  GtkWindow* Window() const { return GTK_WINDOW(mWindow.Get()); }
  void PlaceChildren(int newWidth, int newHeight) override;
  bool MoveFocus(GtkDirectionType direction) override;
  bool FocusNext(GtkDirectionType direction) const;
  bool HandleKey(GdkEventKey& key);
  bool IsTabAgain(GdkEventKey& key);
  void NotifyActive();

  int mWidth;
  int mHeight;
  GRef<GtkWidget> mWindow;
  GRef<GtkWidget> mArea;
  bool mRightToLeft = false;
  SignalConnection mClose;
  SignalConnection mKey;
  SignalConnection mActive;
  GtkWidget* mPageLeft = nullptr;
  guint32 mTabTime = 0;
  bool mPlacing = false;
};

NativeControl& Native(const std::shared_ptr<Control::Impl>& control) {
  return static_cast<NativeControl&>(*control);
}

NativeForm::NativeForm(const std::string& name, float clientWidth, float clientHeight)
    : Impl(name), mWidth(Units(clientWidth)), mHeight(Units(clientHeight)) {
  if (!gdk_display_get_default()) throw std::runtime_error("there is no display");
  mWindow = GRef<GtkWidget>::Share(gtk_window_new(GTK_WINDOW_TOPLEVEL));
  mArea = GRef<GtkWidget>::Share(NewFormArea(this));
  gtk_widget_set_name(mWindow.Get(), name.c_str());
  gtk_container_add(GTK_CONTAINER(mWindow.Get()), mArea.Get());
  gtk_window_set_default_size(Window(), mWidth, mHeight);

  mClose = Connect<gboolean(GdkEvent*)>(mWindow.Get(), "delete-event", [this](GdkEvent*) {
    Unload();
    return TRUE;  // the window goes by Unload, or has gone already
  });
  mKey = Connect<gboolean(GdkEventKey*)>(mWindow.Get(), "key-press-event",
                                         [this](GdkEventKey* key) { return HandleKey(*key); });
  // Later, so that a screen reader has presented the window before what it announces.
  mActive = Connect<void(GParamSpec*)>(mWindow.Get(), "notify::is-active", [this](GParamSpec*) {
    PostTo(weak_from_this(), [](Impl& form) { static_cast<NativeForm&>(form).NotifyActive(); });
  });
  Windows().push_back(Window());
}

std::shared_ptr<Control::Impl> NativeForm::MakeControl(const std::string& kind,
                                                       const std::string& controlName) {
  const auto control = platform::MakeControl(kind, controlName);
  gtk_container_add(GTK_CONTAINER(mArea.Get()), control->Widget());
  gtk_widget_show(control->Widget());
  return control;
}

void NativeForm::Mirror(bool rightToLeft) {
  mRightToLeft = rightToLeft;
  const GtkTextDirection direction = rightToLeft ? GTK_TEXT_DIR_RTL : GTK_TEXT_DIR_LTR;
  gtk_widget_set_direction(mWindow.Get(), direction);
  gtk_widget_set_direction(mArea.Get(), direction);
  gtk_widget_queue_allocate(mArea.Get());
}

void NativeForm::PlaceChildren(int newWidth, int newHeight) {
  mPlacing = true;
  if (newWidth != mWidth || newHeight != mHeight) {
    mWidth = newWidth;
    mHeight = newHeight;
    Notify(onResize);
  }
  mPlacing = false;
  if (!mWindow) return;  // the handler has ended the form
  for (const auto& control : controls) {
    GtkWidget* const widget = Native(control).Widget();
    // GTK wants to be asked what the widget would like before it is told what it gets.
    gtk_widget_get_preferred_size(widget, nullptr, nullptr);
    const PixelBounds place = RoundedEdges(control->Where(), Units);
    const int left = mRightToLeft ? mWidth - place.left - place.width : place.left;
    GtkAllocation allocation = {left, place.top, place.width, place.height};
    // GTK gives no place smaller than one pixel.
    const bool seen = place.width > 0 && place.height > 0;
    gtk_widget_set_child_visible(widget, seen);
    if (seen) gtk_widget_size_allocate(widget, &allocation);
  }
}

/// The page asks for it itself, outside any event, when Tab leaves its last element.
bool NativeForm::MoveFocus(GtkDirectionType direction) {
  const std::unique_ptr<GdkEvent, decltype(&gdk_event_free)> event(gtk_get_current_event(),
                                                                   &gdk_event_free);
  GtkWidget* const left = gtk_window_get_focus(Window());
  // Beyond the last control GTK asks once more, from no control at all.
  if (!event && left) mPageLeft = left;
  return FocusNext(direction);
}

bool NativeForm::HandleKey(GdkEventKey& key) {
  return IsTabAgain(key) || std::ranges::any_of(controls, [&](const auto& control) {
           return Native(control).HandleKey(key);
         });
}

/// WebKit first lets Tab leave the page and then hands the same key on as one that the page did not
/// use: the focus would go two steps. The second coming is known by its time; other keys (Shift
/// among them, and another Tab) may have come between.
bool NativeForm::IsTabAgain(GdkEventKey& key) {
  if (key.keyval != GDK_KEY_Tab && key.keyval != GDK_KEY_ISO_Left_Tab) return false;
  const bool again = mPageLeft && key.time <= mTabTime;
  mTabTime = std::max(mTabTime, key.time);
  // The page still waits for this key and lets it pass. Where it never got it, it would let the
  // first key pass that is typed after coming back, which would be lost.
  if (again) gtk_widget_event(std::exchange(mPageLeft, nullptr), reinterpret_cast<GdkEvent*>(&key));
  return again;
}

/// In the order of adding, where GTK's own order would go by position.
bool NativeForm::FocusNext(GtkDirectionType direction) const {
  auto order = controls;
  if (direction == GTK_DIR_TAB_BACKWARD) std::reverse(order.begin(), order.end());
  GtkWidget* const focused = gtk_container_get_focus_child(GTK_CONTAINER(mArea.Get()));
  const auto widget = [](const auto& control) { return Native(control).Widget(); };
  auto next = std::ranges::find(order, focused, widget);
  if (next == order.end()) next = order.begin();
  return std::any_of(next, order.end(),
                     [&](const auto& control) { return Native(control).TakeFocus(direction); });
}

bool NativeForm::IsMinimised() const {
  GdkWindow* const window = gtk_widget_get_window(mWindow.Get());
  return window && (gdk_window_get_state(window) & GDK_WINDOW_STATE_ICONIFIED) != 0;
}

void NativeForm::Present() {
  gtk_widget_show(mArea.Get());
  gtk_window_present(Window());
}

void NativeForm::DestroyNativeWindow() {
  if (!mWindow) return;
  mClose = {};
  mKey = {};
  mActive = {};
  ForgetFormAreaOwner(mArea.Get());
  const auto window = std::exchange(mWindow, {});
  mArea = {};
  std::erase(Windows(), GTK_WINDOW(window.Get()));
  DetachControls();
  gtk_widget_destroy(window.Get());
}

void NativeForm::NotifyActive() {
  if (!mWindow) return;
  const bool active = gtk_window_is_active(Window()) != FALSE;
  for (const auto& control : controls) control->FormActivated(active);
}

}  // namespace

std::shared_ptr<Form::Impl> MakeForm(const std::string& name, float clientWidth,
                                     float clientHeight) {
  return std::make_shared<NativeForm>(name, clientWidth, clientHeight);
}

}  // namespace platform
