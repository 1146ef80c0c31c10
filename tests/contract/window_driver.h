// What a person or the system does to windows from outside, and what they see. Each peer has its
// own way of doing it; the cases do not know which.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "platform/window/web_browser.h"

namespace peer {

/// Where a control is seen, in pixels from the top left corner of its window's inside.
struct Pixels {
  int left;
  int top;
  int width;
  int height;
  bool operator==(const Pixels&) const = default;
};

struct Message {
  std::string text;
  std::string title;
  bool rightToLeft;
};

/// The beginning of every case: no window, no page.
void Begin();

/// Handles events until `condition` holds; false when it does not within the time.
bool RunUntil(const std::function<bool()>& condition,
              std::chrono::milliseconds deadline = std::chrono::seconds(20));

/// Windows go by their form's name, controls by theirs; each throws when there is no such thing.
bool IsSeen(const std::string& form);
void Close(const std::string& form);
/// The person drags the window to this client size, in twips.
void Resize(const std::string& form, float width, float height);
void Minimise(const std::string& form);
void Restore(const std::string& form);
Pixels PlaceOf(const std::string& form, const std::string& control);
/// Does nothing while the button is disabled.
void Press(const std::string& form, const std::string& button);

/// The next message is looked at and then closed with OK; earlier arrangements end.
void WhenAMessageIsShown(std::function<void(const Message&)> look);

/// Writes a page with these boxes, each in a row with a label that is for its id, "Voice 1", "Voice
/// 2"..., and a link, `<a id="link">`, to an address; answers its path.
std::string PageWith(const std::vector<platform::InputState>& boxes,
                     const std::string& linkAddress = "about:blank");
/// The person clicks on an element of the page that a browser shows.
void ClickBox(const std::string& form, const std::string& browser, const std::string& id);
/// The person clicks on the label in a row; rows count from 0.
void ClickLabel(const std::string& form, const std::string& browser, int row);
/// What assistive technology calls the box in a row.
std::string NameOfBox(const std::string& form, const std::string& browser, int row);
void FollowLink(const std::string& form, const std::string& browser);

/// What was announced to assistive technology since Begin, in order.
std::vector<std::string> Announced();

/// Writes a page with an element of the id "busy"; answers its path.
std::string BusyPage();
/// What assistive technology calls that element; empty where it has no name or is not there yet.
std::string NameOfBusyElement(const std::string& form, const std::string& browser);

}  // namespace peer
