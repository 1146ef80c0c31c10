// The top-level window: an absolute layout that keeps every control's edges on whole pixels, and
// the order of events from Show to the end.
//
// SPDX-License-Identifier: MIT
#include "platform/window/form.h"

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

namespace platform {
namespace {

/// How many forms are loaded, counting those whose end is still to be told.
int loadedForms = 0;

/// The windows that have not gone.
std::vector<GtkWindow*>& Windows() {
  static std::vector<GtkWindow*> windows;
  return windows;
}

int Units(double twips) { return static_cast<int>(std::lround(twips / TwipsPerUnit())); }

}  // namespace

int LoadedForms() { return loadedForms; }

GtkWindow* VisibleFormWindow() {
  for (GtkWindow* window : Windows()) {
    if (gtk_widget_get_visible(GTK_WIDGET(window))) return window;
  }
  return nullptr;
}

struct Form::Impl final : FormAreaOwner, std::enable_shared_from_this<Form::Impl> {
  Impl(std::string name, float clientWidth, float clientHeight);
  ~Impl();
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  GtkWindow* Window() const { return GTK_WINDOW(mWindow.Get()); }
  void Add(const std::shared_ptr<NativeControl>& control);
  void SetRightToLeft(bool rightToLeft);
  void Show();
  void Unload();

  const std::string name;
  std::string caption;
  std::vector<std::shared_ptr<NativeControl>> controls;
  int width;
  int height;
  std::function<void()> onResize;
  std::function<void()> onUnload;
  std::function<void()> onUnloaded;

 private:
  void PlaceChildren(int newWidth, int newHeight) override;
  bool MoveFocus(GtkDirectionType direction) override;
  bool FocusNext(GtkDirectionType direction) const;
  bool IsTabAgain(GdkEventKey& key);
  GtkAllocation PlaceOnScreen(const Place& place) const;
  void ChildMoved() const;
  void TellResize() const;
  void CloseWindow();
  void TellUnloaded();
  void EndLoaded();

  GRef<GtkWidget> mWindow;
  GRef<GtkWidget> mArea;
  bool mRightToLeft = false;
  bool mUnloading = false;
  bool mLoaded = false;
  SignalConnection mClose;
  SignalConnection mKey;
  GtkWidget* mPageLeft = nullptr;
  guint32 mTabTime = 0;
  bool mPlacing = false;
};

Form::Impl::Impl(std::string name, float clientWidth, float clientHeight)
    : name(std::move(name)), width(Units(clientWidth)), height(Units(clientHeight)) {
  if (!gdk_display_get_default()) throw std::runtime_error("there is no display");
  mWindow = GRef<GtkWidget>::Share(gtk_window_new(GTK_WINDOW_TOPLEVEL));
  mArea = GRef<GtkWidget>::Share(NewFormArea(this));
  gtk_widget_set_name(mWindow.Get(), this->name.c_str());
  gtk_container_add(GTK_CONTAINER(mWindow.Get()), mArea.Get());
  gtk_window_set_default_size(Window(), width, height);

  mClose = Connect<gboolean(GdkEvent*)>(mWindow.Get(), "delete-event", [this](GdkEvent*) {
    Unload();
    return TRUE;  // the window goes by Unload, or has gone already
  });
  mKey = Connect<gboolean(GdkEventKey*)>(mWindow.Get(), "key-press-event",
                                         [this](GdkEventKey* key) { return IsTabAgain(*key); });
  Windows().push_back(Window());
  ++loadedForms;
  mLoaded = true;
}

Form::Impl::~Impl() {
  CloseWindow();
  EndLoaded();
}

void Form::Impl::Add(const std::shared_ptr<NativeControl>& control) {
  Window();
  controls.push_back(control);
  gtk_container_add(GTK_CONTAINER(mArea.Get()), control->Widget());
  gtk_widget_show(control->Widget());
  control->SetMover([this] { ChildMoved(); });
}

void Form::Impl::SetRightToLeft(bool rightToLeft) {
  mRightToLeft = rightToLeft;
  const GtkTextDirection direction = rightToLeft ? GTK_TEXT_DIR_RTL : GTK_TEXT_DIR_LTR;
  gtk_widget_set_direction(GTK_WIDGET(Window()), direction);
  gtk_widget_set_direction(mArea.Get(), direction);
  ChildMoved();
}

/// Several moves make one placing, which comes before the next picture of the window.
void Form::Impl::ChildMoved() const {
  if (!mPlacing) gtk_widget_queue_allocate(mArea.Get());
}

void Form::Impl::PlaceChildren(int newWidth, int newHeight) {
  mPlacing = true;
  if (newWidth != width || newHeight != height) {
    width = newWidth;
    height = newHeight;
    TellResize();
  }
  mPlacing = false;
  for (const auto& control : controls) {
    if (!control->Lives()) return;  // the handler has ended the form
    GtkWidget* const widget = control->Widget();
    // GTK wants to be asked what the widget would like before it is told what it gets.
    gtk_widget_get_preferred_size(widget, nullptr, nullptr);
    GtkAllocation place = PlaceOnScreen(control->Where());
    // GTK gives no place smaller than one pixel.
    const bool seen = place.width > 0 && place.height > 0;
    gtk_widget_set_child_visible(widget, seen);
    if (seen) gtk_widget_size_allocate(widget, &place);
  }
}

/// Edges are rounded, not sizes: two controls that meet in twips meet on the screen.
GtkAllocation Form::Impl::PlaceOnScreen(const Place& place) const {
  const int left = Units(place.left);
  const int right = Units(static_cast<double>(place.left) + place.width);
  const int top = Units(place.top);
  const int bottom = Units(static_cast<double>(place.top) + place.height);
  return {mRightToLeft ? width - right : left, top, right - left, bottom - top};
}

void Form::Impl::TellResize() const {
  // A copy: the handler may replace itself.
  if (const auto handler = onResize) Guard(handler);
}

/// The page asks for it itself, outside any event, when Tab leaves its last element.
bool Form::Impl::MoveFocus(GtkDirectionType direction) {
  const std::unique_ptr<GdkEvent, decltype(&gdk_event_free)> event(gtk_get_current_event(),
                                                                   &gdk_event_free);
  GtkWidget* const left = gtk_container_get_focus_child(GTK_CONTAINER(mArea.Get()));
  // Beyond the last control GTK asks once more, from no control at all.
  if (!event && left) mPageLeft = left;
  return FocusNext(direction);
}

/// WebKit first lets Tab leave the page and then hands the same key on as one that the page did not
/// use: the focus would go two steps. The second coming is known by its time; other keys (Shift
/// among them, and another Tab) may have come between.
bool Form::Impl::IsTabAgain(GdkEventKey& key) {
  if (key.keyval != GDK_KEY_Tab && key.keyval != GDK_KEY_ISO_Left_Tab) return false;
  const bool again = mPageLeft && key.time <= mTabTime;
  mTabTime = std::max(mTabTime, key.time);
  // The page still waits for this key and lets it pass. Where it never got it, it would let the
  // first key pass that is typed after coming back, which would be lost.
  if (again) gtk_widget_event(std::exchange(mPageLeft, nullptr), reinterpret_cast<GdkEvent*>(&key));
  return again;
}

/// In the order of adding, where GTK's own order would go by position.
bool Form::Impl::FocusNext(GtkDirectionType direction) const {
  auto order = controls;
  if (direction == GTK_DIR_TAB_BACKWARD) std::reverse(order.begin(), order.end());
  GtkWidget* const focused = gtk_container_get_focus_child(GTK_CONTAINER(mArea.Get()));
  auto next = std::ranges::find(order, focused, &NativeControl::Widget);
  if (next == order.end()) next = order.begin();
  return std::any_of(next, order.end(),
                     [&](const auto& control) { return control->TakeFocus(direction); });
}

void Form::Impl::Show() {
  Window();
  TellResize();
  gtk_widget_show(mArea.Get());
  gtk_window_present(Window());
}

void Form::Impl::Unload() {
  if (mUnloading) return;
  mUnloading = true;
  const auto alive = shared_from_this();
  if (const auto handler = onUnload) Guard(handler);
  CloseWindow();
  Post([form = weak_from_this()] {
    if (const auto living = form.lock()) living->TellUnloaded();
  });
}

void Form::Impl::CloseWindow() {
  mUnloading = true;
  if (!mWindow) return;
  mClose = {};
  mKey = {};
  ForgetFormAreaOwner(mArea.Get());
  onResize = nullptr;
  onUnload = nullptr;
  const auto window = std::exchange(mWindow, {});
  mArea = {};
  std::erase(Windows(), GTK_WINDOW(window.Get()));
  for (const auto& control : controls) control->End();
  gtk_widget_destroy(window.Get());
}

void Form::Impl::TellUnloaded() {
  EndLoaded();
  if (const auto handler = std::exchange(onUnloaded, nullptr)) Guard(handler);
}

void Form::Impl::EndLoaded() {
  if (std::exchange(mLoaded, false)) --loadedForms;
}

Form::Form(std::string name, float clientWidth, float clientHeight)
    : mImpl(std::make_shared<Impl>(std::move(name), clientWidth, clientHeight)) {}

Form::~Form() = default;

Control Form::AddControl(const std::string& kind, const std::string& name, float width,
                         float height) {
  mImpl->Window();
  const auto control = MakeControl(kind, name);
  control->Move({0, 0, width, height});
  mImpl->Add(control);
  return Control(control);
}

std::vector<Control> Form::Controls() const {
  mImpl->Window();
  return {mImpl->controls.begin(), mImpl->controls.end()};
}

std::string Form::Name() const { return mImpl->name; }

std::string Form::Caption() const { return mImpl->caption; }

void Form::SetCaption(const std::string& caption) {
  gtk_window_set_title(mImpl->Window(), caption.c_str());
  mImpl->caption = caption;
}

// The window manager writes the title in its own font, and each control has its own.
void Form::SetFont(const Font&) { mImpl->Window(); }

void Form::SetRightToLeft(bool rightToLeft) { mImpl->SetRightToLeft(rightToLeft); }

float Form::ClientWidth() const { return static_cast<float>(mImpl->width * TwipsPerUnit()); }

float Form::ClientHeight() const { return static_cast<float>(mImpl->height * TwipsPerUnit()); }

bool Form::IsMinimised() const {
  GdkWindow* window = gtk_widget_get_window(GTK_WIDGET(mImpl->Window()));
  return window && (gdk_window_get_state(window) & GDK_WINDOW_STATE_ICONIFIED) != 0;
}

void Form::Show() { mImpl->Show(); }

void Form::Hide() { gtk_widget_hide(GTK_WIDGET(mImpl->Window())); }

void Form::Unload() { mImpl->Unload(); }

void Form::OnResize(std::function<void()> handler) { mImpl->onResize = std::move(handler); }

void Form::OnUnload(std::function<void()> handler) { mImpl->onUnload = std::move(handler); }

void Form::OnUnloaded(std::function<void()> handler) { mImpl->onUnloaded = std::move(handler); }

}  // namespace platform
