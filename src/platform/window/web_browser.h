// The embedded browser: shows a local page and lets the host read its check boxes. The page is only
// ever looked at: no script of it runs, nothing remote is loaded, no window is opened.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/window/control.h"

namespace platform {

/// The state, at the moment of asking, of one INPUT element of the page. An element without one of
/// the attributes reads as false there.
struct InputState {
  std::string id;  // empty when the element has none
  bool checked = false;
  bool disabled = false;
};

/// All INPUT elements of the page in document order; absent when the page could not be read.
using PageInputs = std::optional<std::vector<InputState>>;

/// The browser side of a control of kind "WebBrowser".
///
/// Where a row of a table has a box and a label, the label's text is the box's name for assistive
/// technology, and a click on it reaches no box of another row; also where several boxes have one
/// id, or none. The ids that ReadInputs answers stay as they are written.
class WebBrowser {
 public:
  /// Throws std::logic_error for a control of another kind.
  explicit WebBrowser(const Control& control);
  ~WebBrowser();
  WebBrowser(const WebBrowser&) = delete;
  WebBrowser& operator=(const WebBrowser&) = delete;

  /// Starts showing a local file (a path as the core writes it), after the form has been shown
  /// where starting the engine would hold that up; files are loaded in the order of the calls. A
  /// file that is missing shows what the browser has for that. The keyboard focus enters the page
  /// when it is there. Pages that the host navigated to earlier are refused to everybody but the
  /// host.
  void Navigate(const std::string& path);

  /// Asked before every navigation, the host's own included, with the address as the browser spells
  /// it; true cancels. The address of a local file may be spelt as path or as file: URL.
  void OnBeforeNavigate(std::function<bool(const std::string& address)> handler);

  /// `handler` is called from the event loop when the browser's engine has ended and taken the page
  /// along: nothing is shown, and nothing can be read, until the next navigation. Never called
  /// where the engine runs in the program's own process.
  void OnPageLost(std::function<void()> handler);

  /// Shows the page of the last Navigate anew.
  void Reload();

  /// What assistive technology calls the element with the id "busy" in pages that have one, from
  /// the next navigation on: a file of no language says in pictures alone that something is under
  /// way.
  void SetBusyText(const std::string& text);

  /// Asks for the live state of the page's INPUT elements. The answer comes exactly once, from
  /// inside the call or from the event loop, unless this object has gone by then: then never.
  void ReadInputs(std::function<void(const PageInputs&)> answer);

  /// False when no INPUT element is different from what the last ReadInputs was or will be told, as
  /// far as the browser tells by itself: a person's last step may still be on its way. True also
  /// where nothing is known. It costs nothing, so it may be asked before asking the page.
  bool InputsMayHaveChanged() const;

 private:
  struct Impl;
  std::shared_ptr<Impl> mImpl;
};

}  // namespace platform
