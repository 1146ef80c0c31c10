// A person at a real window: GTK's and WebKit's own objects, on a virtual display.
//
// SPDX-License-Identifier: MIT
#include "tests/contract/window_driver.h"

#include <cmath>
#include <memory>
#include <optional>
#include <stdexcept>

#include "platform/linux/documents/native_path.h"
#include "platform/linux/signals.h"
#include "platform/linux/window/toolkit.h"
#include "platform/window/form.h"
#include "tests/contract/linux/window_widgets.h"
#include "tests/support/temporary_folder.h"

namespace widgets {
namespace {

using platform::GMemory;
using platform::GRef;

/// Calls `visit` with every top-level window until it answers true.
template <class Visit>
GtkWidget* FindTopLevel(Visit visit) {
  GtkWidget* found = nullptr;
  GList* const windows = gtk_window_list_toplevels();
  for (GList* window = windows; window && !found; window = window->next) {
    if (visit(GTK_WIDGET(window->data))) found = GTK_WIDGET(window->data);
  }
  g_list_free(windows);
  return found;
}

struct Search {
  std::string name;
  GtkWidget* found = nullptr;
};

void LookAt(GtkWidget* widget, gpointer data) {
  auto& search = *static_cast<Search*>(data);
  if (search.found) return;
  if (search.name == gtk_widget_get_name(widget)) {
    search.found = widget;
  } else if (GTK_IS_CONTAINER(widget)) {
    gtk_container_forall(GTK_CONTAINER(widget), LookAt, data);
  }
}

}  // namespace

GtkWindow* WindowOf(const std::string& form) {
  GtkWidget* const window =
      FindTopLevel([&](GtkWidget* widget) { return form == gtk_widget_get_name(widget); });
  if (!window) throw std::out_of_range("no window " + form);
  return GTK_WINDOW(window);
}

GtkWidget* WidgetOf(const std::string& form, const std::string& control) {
  Search search{control};
  LookAt(gtk_bin_get_child(GTK_BIN(WindowOf(form))), &search);
  if (!search.found) throw std::out_of_range("no control " + control);
  return search.found;
}

WebKitWebView* ViewOf(const std::string& form, const std::string& browser) {
  GtkBin* const control = GTK_BIN(WidgetOf(form, browser));
  if (!peer::RunUntil([&] { return gtk_bin_get_child(control) != nullptr; }))
    throw std::runtime_error("the engine has not been started");
  return WEBKIT_WEB_VIEW(gtk_bin_get_child(control));
}

GtkMessageDialog* ShownMessage() {
  GtkWidget* const message = FindTopLevel([](GtkWidget* widget) {
    return GTK_IS_MESSAGE_DIALOG(widget) && gtk_widget_get_mapped(widget);
  });
  return message ? GTK_MESSAGE_DIALOG(message) : nullptr;
}

std::string AskPage(WebKitWebView* view, const std::string& script) {
  std::optional<std::string> answer;
  webkit_web_view_evaluate_javascript(
      view, script.c_str(), -1, "person", nullptr, nullptr,
      [](GObject* page, GAsyncResult* result, gpointer data) {
        JSCValue* const value =
            webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(page), result, nullptr);
        auto& text = *static_cast<std::optional<std::string>*>(data);
        if (!value) {
          text = "failed";
          return;
        }
        const GMemory<char> words(jsc_value_to_string(value));
        text = words.get();
        g_object_unref(value);
      },
      &answer);
  while (!answer) g_main_context_iteration(nullptr, TRUE);
  return *answer;
}

void RunInPage(WebKitWebView* view, const std::string& script) {
  webkit_web_view_evaluate_javascript(view, script.c_str(), -1, "person", nullptr, nullptr, nullptr,
                                      nullptr);
}

}  // namespace widgets

namespace peer {
namespace {

using platform::SignalConnection;
using widgets::WidgetOf;
using widgets::WindowOf;

std::unique_ptr<support::TemporaryFolder> pages;
int pagesWritten = 0;

/// Looks every few milliseconds whether a message is shown.
struct MessageWatch {
  std::function<void(const Message&)> look;
  guint source = 0;
  bool looking = false;
};
MessageWatch watch;

void EndWatch() {
  if (watch.source != 0) g_source_remove(watch.source);
  watch = {};
}

/// The label that shows the message's text.
GtkLabel* TextOf(GtkMessageDialog* message) {
  GList* const labels =
      gtk_container_get_children(GTK_CONTAINER(gtk_message_dialog_get_message_area(message)));
  GtkLabel* const text = GTK_LABEL(labels->data);
  g_list_free(labels);
  return text;
}

gboolean LookForMessage(gpointer) {
  GtkMessageDialog* const message = widgets::ShownMessage();
  if (!message || watch.looking) return G_SOURCE_CONTINUE;
  watch.looking = true;
  GtkLabel* const text = TextOf(message);
  const auto look = watch.look;
  look({gtk_label_get_text(text), gtk_window_get_title(GTK_WINDOW(message)),
        gtk_widget_get_direction(GTK_WIDGET(text)) == GTK_TEXT_DIR_RTL});
  gtk_button_clicked(
      GTK_BUTTON(gtk_dialog_get_widget_for_response(GTK_DIALOG(message), GTK_RESPONSE_OK)));
  watch.looking = false;
  return G_SOURCE_CONTINUE;
}

int Units(float twips) { return static_cast<int>(std::lround(twips / platform::TwipsPerUnit())); }

std::string Attribute(const std::string& text) {
  const platform::GMemory<char> escaped(g_markup_escape_text(text.c_str(), -1));
  return "\"" + std::string(escaped.get()) + "\"";
}

std::string AddressOf(const std::string& corePath) {
  if (!corePath.starts_with('\\')) return corePath;
  const platform::GMemory<char> address(
      g_filename_to_uri(platform::NativePath(corePath).c_str(), nullptr, nullptr));
  return address.get();
}

std::string Utf16(const std::string& text) {
  gsize size = 0;
  const platform::GMemory<char> bytes(g_convert(text.c_str(), static_cast<gssize>(text.size()),
                                                "UTF-16LE", "UTF-8", nullptr, &size, nullptr));
  return "\xFF\xFE" + std::string(bytes.get(), size);
}

/// Answers its path.
std::string WritePage(const std::string& page) {
  const auto path = pages->Path() / ("page" + std::to_string(++pagesWritten) + ".htm");
  support::WriteBytes(path, Utf16(page));
  return support::CorePath(path);
}

std::vector<std::string> announced;

/// By either signal that platform/linux/window/speech.cpp uses. An AtkObject emits both.
gboolean HearAnnouncement(GSignalInvocationHint* hint, guint, const GValue* values, gpointer) {
  auto* const accessible = ATK_OBJECT(g_value_get_object(values));
  const bool isState = g_quark_try_string("showing") == hint->detail;
  if (!isState) {
    announced.emplace_back(g_value_get_string(values + 1));
  } else if (atk_object_get_role(accessible) == ATK_ROLE_NOTIFICATION) {
    announced.emplace_back(atk_object_get_name(accessible));
  }
  return TRUE;
}

void HearAnnouncements() {
  static const bool heard = [] {
    g_type_class_ref(ATK_TYPE_OBJECT);  // NOLINT: kept, it has the signals
    g_signal_add_emission_hook(g_signal_lookup("state-change", ATK_TYPE_OBJECT),
                               g_quark_from_static_string("showing"), HearAnnouncement, nullptr,
                               nullptr);
    if (const guint notification = g_signal_lookup("notification", ATK_TYPE_OBJECT))
      g_signal_add_emission_hook(notification, 0, HearAnnouncement, nullptr, nullptr);
    return true;
  }();
  static_cast<void>(heard);
  announced.clear();
}

}  // namespace

void Begin() {
  EndWatch();
  HearAnnouncements();
  pages = std::make_unique<support::TemporaryFolder>();
}

std::vector<std::string> Announced() { return announced; }

bool RunUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
  bool late = false;
  const guint alarm = g_timeout_add(
      static_cast<guint>(deadline.count()),
      [](gpointer data) -> gboolean {
        *static_cast<bool*>(data) = true;
        return G_SOURCE_CONTINUE;
      },
      &late);
  // Some conditions change without an event, so the loop turns at least this often.
  const guint pulse =
      g_timeout_add(10, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
  bool holds = condition();
  while (!holds && !late) {
    g_main_context_iteration(nullptr, TRUE);
    holds = condition();
  }
  g_source_remove(alarm);
  g_source_remove(pulse);
  return holds;
}

bool IsSeen(const std::string& form) {
  GdkWindow* const window = gtk_widget_get_window(GTK_WIDGET(WindowOf(form)));
  return window && gtk_widget_get_mapped(GTK_WIDGET(WindowOf(form))) &&
         gdk_window_is_viewable(window);
}

void Close(const std::string& form) { gtk_window_close(WindowOf(form)); }

void Resize(const std::string& form, float width, float height) {
  gtk_window_resize(WindowOf(form), Units(width), Units(height));
}

void Minimise(const std::string& form) { gtk_window_iconify(WindowOf(form)); }

void Restore(const std::string& form) { gtk_window_deiconify(WindowOf(form)); }

Pixels PlaceOf(const std::string& form, const std::string& control) {
  GtkWidget* const widget = WidgetOf(form, control);
  GtkAllocation place;
  gtk_widget_get_allocation(widget, &place);
  int left = 0, top = 0;
  gtk_widget_translate_coordinates(widget, GTK_WIDGET(WindowOf(form)), 0, 0, &left, &top);
  const int scale = gtk_widget_get_scale_factor(widget);
  return {left * scale, top * scale, place.width * scale, place.height * scale};
}

void Press(const std::string& form, const std::string& button) {
  AtkObject* const accessible = gtk_widget_get_accessible(WidgetOf(form, button));
  atk_action_do_action(ATK_ACTION(accessible), 0);
}

void WhenAMessageIsShown(std::function<void(const Message&)> look) {
  EndWatch();
  watch.look = std::move(look);
  watch.source = g_timeout_add(10, LookForMessage, nullptr);
  // A message may look after other messages in turn.
  g_source_set_can_recurse(g_main_context_find_source_by_id(nullptr, watch.source), TRUE);
}

std::string PageWith(const std::vector<platform::InputState>& boxes,
                     const std::string& linkAddress) {
  std::string page = "<!DOCTYPE html>\r\n<html>\r\n<title>Downloads</title>\r\n<body><table>\r\n";
  int row = 0;
  for (const auto& box : boxes) {
    page += "<tr><td><input type=\"checkbox\"" +
            (box.id.empty() ? "" : " id=" + Attribute(box.id)) + (box.checked ? " checked" : "") +
            (box.disabled ? " disabled" : "") + "><td><label for=" + Attribute(box.id) + ">Voice " +
            std::to_string(++row) + "</label></tr>\r\n";
  }
  page += "</table><a id=\"link\" href=" + Attribute(AddressOf(linkAddress)) +
          ">link</a></body></html>\r\n";
  return WritePage(page);
}

std::string BusyPage() {
  return WritePage("<!DOCTYPE html><html><body><div id=\"busy\"></div></body></html>");
}

void ClickBox(const std::string& form, const std::string& browser, const std::string& id) {
  widgets::RunInPage(widgets::ViewOf(form, browser),
                     "document.getElementById('" + id + "').click()");
}

void ClickLabel(const std::string& form, const std::string& browser, int row) {
  widgets::RunInPage(widgets::ViewOf(form, browser),
                     "document.querySelectorAll('label')[" + std::to_string(row) + "].click()");
}

// The end-to-end tests hear the names themselves; here the page tells them by the same rules.
std::string NameOfBox(const std::string& form, const std::string& browser, int row) {
  return widgets::AskPage(widgets::ViewOf(form, browser),
                          "{ const box = document.querySelectorAll('input')[" +
                              std::to_string(row) +
                              "]; box.getAttribute('aria-label') ??"
                              " Array.from(box.labels, label => label.textContent).join(' ') }");
}

std::string NameOfBusyElement(const std::string& form, const std::string& browser) {
  return widgets::AskPage(widgets::ViewOf(form, browser),
                          "document.getElementById('busy')?.getAttribute('aria-label') ?? ''");
}

void FollowLink(const std::string& form, const std::string& browser) {
  widgets::RunInPage(widgets::ViewOf(form, browser), "document.getElementById('link').click()");
}

}  // namespace peer
