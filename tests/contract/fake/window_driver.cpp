// A person at a window that exists in memory only.
//
// SPDX-License-Identifier: MIT
#include "tests/contract/window_driver.h"

#include <cmath>
#include <map>
#include <stdexcept>

#include "tests/fake_platform/fake.h"

namespace peer {
namespace {

struct Page {
  std::vector<platform::InputState> boxes;
  std::string link;
};

/// Pages that were written, by path, and how many of the shown ones each browser has loaded.
std::map<std::string, Page> pages;
std::map<const fake::Browser*, std::size_t> loaded;

fake::Form& FormNamed(const std::string& name) {
  for (const auto& form : fake::TheWorld().loadedForms) {
    if (form->name == name) return *form;
  }
  throw std::out_of_range("no window " + name);
}

fake::Control& ControlNamed(const std::string& form, const std::string& name) {
  for (const auto& control : FormNamed(form).Controls()) {
    if (control->name == name) return *control;
  }
  throw std::out_of_range("no control " + name);
}

/// The fake remembers where a browser went and leaves to the test what is there.
void LoadPages() {
  for (const auto& form : fake::TheWorld().loadedForms) {
    for (const auto& control : form->Controls()) {
      auto& browser = control->browser;
      if (loaded[&browser] == browser.shown.size()) continue;
      loaded[&browser] = browser.shown.size();
      browser.inputs = pages[browser.shown.back()].boxes;
    }
  }
}

}  // namespace

void Begin() {
  fake::Reset();
  pages.clear();
  loaded.clear();
}

bool RunUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
  for (int late = 0; late < deadline.count(); ++late) {
    LoadPages();
    if (condition()) return true;
    fake::Pass(1);
  }
  return condition();
}

bool IsSeen(const std::string& form) {
  return FormNamed(form).visible && !FormNamed(form).minimised;
}

std::vector<std::string> Announced() {
  std::vector<std::string> announced;
  for (const auto& form : fake::TheWorld().loadedForms) {
    for (const auto& control : form->Controls())
      announced.insert(announced.end(), control->announced.begin(), control->announced.end());
  }
  return announced;
}

void Close(const std::string& form) { FormNamed(form).Close(); }

void Resize(const std::string& form, float width, float height) {
  FormNamed(form).Resize(width, height);
}

void Minimise(const std::string& form) { FormNamed(form).Minimise(); }

void Restore(const std::string& form) { FormNamed(form).Restore(); }

Pixels PlaceOf(const std::string& form, const std::string& control) {
  const fake::Form& window = FormNamed(form);
  const fake::Control& placed = ControlNamed(form, control);
  const auto pixels = [](double twips) {
    return static_cast<int>(std::lround(twips / platform::TwipsPerPixelX()));
  };
  const platform::PixelBounds place = platform::RoundedEdges(placed.Where(), pixels);
  const int left =
      window.rightToLeft ? pixels(window.clientWidth) - place.left - place.width : place.left;
  return {left, place.top, place.width, place.height};
}

void Press(const std::string& form, const std::string& button) {
  ControlNamed(form, button).Click();
}

void WhenAMessageIsShown(std::function<void(const Message&)> look) {
  fake::TheWorld().whileMessageIsShown = [look = std::move(look)] {
    const auto& message = fake::TheWorld().messages.back();
    look({message.text, message.title, message.rightToLeft});
  };
}

std::string PageWith(const std::vector<platform::InputState>& boxes,
                     const std::string& linkAddress) {
  const std::string path = "\\pages\\page" + std::to_string(pages.size() + 1) + ".htm";
  pages[path] = {boxes, linkAddress};
  return path;
}

void ClickBox(const std::string& form, const std::string& browser, const std::string& id) {
  auto& page = ControlNamed(form, browser).browser;
  for (const auto& input : page.inputs.value()) {
    if (input.id == id) return page.Tick(id, !input.checked);
  }
  throw std::out_of_range("no box " + id);
}

void ClickLabel(const std::string& form, const std::string& browser, int row) {
  auto& input =
      ControlNamed(form, browser).browser.inputs.value().at(static_cast<std::size_t>(row));
  if (!input.disabled) input.checked = !input.checked;
}

/// A box in memory has no name to share.
std::string NameOfBox(const std::string&, const std::string&, int row) {
  return "Voice " + std::to_string(row + 1);
}

std::string BusyPage() { return PageWith({}); }

std::string NameOfBusyElement(const std::string& form, const std::string& browser) {
  return ControlNamed(form, browser).browser.busyText;
}

void FollowLink(const std::string& form, const std::string& browser) {
  auto& page = ControlNamed(form, browser).browser;
  page.Follow(pages[page.shown.back()].link);
}

}  // namespace peer
