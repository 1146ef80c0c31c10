// Finding the widgets behind forms and controls by their names.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>
#include <webkit2/webkit2.h>

#include <string>

namespace widgets {

/// The form's window; throws when there is none.
GtkWindow* WindowOf(const std::string& form);
/// The control's widget; throws when there is none.
GtkWidget* WidgetOf(const std::string& form, const std::string& control);
/// The browser's view, which is there some time after the form has been shown: it waits for that.
WebKitWebView* ViewOf(const std::string& form, const std::string& browser);
/// The message that is shown; null when none is.
GtkMessageDialog* ShownMessage();
/// Runs script in the page, as a person's hand rather than the page would.
void RunInPage(WebKitWebView* view, const std::string& script);
/// The script's answer as text.
std::string AskPage(WebKitWebView* view, const std::string& script);

}  // namespace widgets
