// A platform that a test holds in its hands: windows, page, documents, installer, shell and time
// are set and looked at here. Files, ini files, XML trees and text order are the real ones of the
// system that the test runs on, in a temporary folder, so they cannot drift from it.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/shared/window/control_impl.h"
#include "platform/shared/window/form_impl.h"
#include "platform/shared/window/own_pages.h"
#include "platform/window/web_browser.h"
#include "tests/support/temporary_folder.h"

namespace fake {

struct Message {
  std::string text;
  std::string title;
  bool rightToLeft;
};

struct ElevatedRun {
  std::string file;
  std::string workingFolder;
};

struct CommonControlsCall {
  std::uint32_t recordSize;
  std::uint32_t classes;
};

/// The browser side of a control of kind "WebBrowser".
struct Browser {
  std::function<bool(const std::string&)> beforeNavigate;
  std::function<void()> pageLost;
  platform::OwnPages ownPages;
  std::string ownPage;
  /// Every file that a navigation reached.
  std::vector<std::string> shown;
  /// The page's INPUT elements; absent for a page that cannot be read.
  platform::PageInputs inputs = std::vector<platform::InputState>();
  int timesRead = 0;
  std::string busyText;
  /// The page is known to be as it was when it was last read.
  bool tellsOfNoChange = false;

  /// The user follows a link of the page; whether it led anywhere.
  bool Follow(const std::string& address);
  /// The engine ends: the page is gone.
  void Lose();
  /// The user ticks or unticks a box; throws when there is none with the id.
  void Tick(const std::string& id, bool checked = true);
};

struct Control final : platform::Control::Impl {
  using Impl::Impl;

  std::string tag;
  std::string caption;
  std::string toolTipText;
  bool enabled = true;
  bool rightToLeft = false;
  std::optional<platform::Font> font;
  std::vector<platform::ContainerItem> items;
  /// How often each property was set, by its name ("Caption", "Bounds", ...).
  std::map<std::string, int> timesSet;
  /// Properties that the control lacks besides those that its kind lacks.
  std::set<std::string> lacks;
  std::function<void()> onClick;
  /// What was announced while the form was active.
  std::vector<std::string> announced;
  Browser browser;

  /// The user presses the button; does nothing while it is disabled.
  void Click();

  std::string Tag() const override;
  std::string Caption() const override;
  void SetCaption(const std::string& text) override;
  void SetFont(const platform::Font& newFont) override;
  void SetRightToLeft(bool newDirection) override;
  void OnClick(std::function<void()>&& handler) override;
  void Speak(const std::string& text) override;
  std::vector<platform::ContainerItem> Items() const override;
  std::string ToolTipText() const override;
  void SetToolTipText(const std::string& text) override;
  bool Enabled() const override { return enabled; }
  void SetEnabled(bool newState) override;
  void BringToFront() override;
  void CheckLives() const override;
  void End() override;
  bool IsAlive() const { return mAlive; }

 private:
  bool Has(const std::string& property) const;
  template <class Value>
  void Set(const std::string& property, Value& member, const Value& value);

  bool mAlive = true;
};

struct Form final : platform::Form::Impl {
  Form(const std::string& name, float width, float height)
      : Impl(name), clientWidth(width), clientHeight(height) {}

  std::optional<platform::Font> font;
  bool rightToLeft = false;
  bool visible = false;
  bool minimised = false;
  float clientWidth;
  float clientHeight;
  /// From back to front.
  std::vector<std::shared_ptr<Control>> zOrder;

  /// In the order of adding.
  std::vector<std::shared_ptr<Control>> Controls() const;
  /// Adds a control of any kind, also one that the real back ends have no use for.
  std::shared_ptr<Control> Add(const std::string& kind, const std::string& controlName);
  void Resize(float width, float height);
  void Minimise();
  void Restore();
  /// The user closes the window.
  void Close() { Unload(); }

  bool HasWindow() const override { return mHasWindow; }
  float ClientWidth() const override { return clientWidth; }
  float ClientHeight() const override { return clientHeight; }
  bool IsMinimised() const override { return minimised; }
  void SetTitle(const std::string&) override {}
  void SetFont(const platform::Font& newFont) override { font = newFont; }
  void Mirror(bool newDirection) override { rightToLeft = newDirection; }
  std::shared_ptr<platform::Control::Impl> MakeControl(const std::string& kind,
                                                       const std::string& controlName) override;
  void PlaceControl(platform::Control::Impl& control) override;
  void Present() override;
  void Conceal() override;
  void DestroyNativeWindow() override;

 private:
  bool mHasWindow = true;
};

/// A download that waits for its outcome.
struct PendingLoad {
  std::string address;
  std::function<void(std::optional<std::string> bytes)> finish;
};

struct World {
  support::TemporaryFolder folder;

  /// What was asked of the platform, in its order, where the order is worth a look: "Load
  /// <address>", "Save <path>", "Navigate <path>", "WindowsInstaller", "InitCommonControls",
  /// "Show", "Hide", "Message <text>", "RunCommandLine <command line>", "RunElevated <file>",
  /// "Gone".
  std::vector<std::string> journal;

  // Program
  std::string programFolder;
  std::string programName = "VelorVoiceSetup";
  std::string companyName = "Velor Software";
  std::string productName = "Velor Voice Setup";
  int majorVersion = 1;
  std::string arguments;
  bool previousInstance = false;
  std::vector<std::string> otherWindows;
  std::vector<std::string> activated;

  // Shell
  std::map<int, std::string> specialFolders;
  std::vector<std::string> commandLines;
  std::vector<ElevatedRun> elevatedRuns;
  bool startingFails = false;

  // Windows Installer: known products and their versions; absent when the system has none.
  std::optional<std::map<std::string, std::string>> installedProducts =
      std::map<std::string, std::string>();
  std::vector<std::string> installerQuestions;

  // System
  std::optional<int> systemMajorVersion = 10;
  std::string countryName = "Sweden";
  std::vector<CommonControlsCall> commonControls;
  bool commonControlsFail = false;

  // Windows. What happens while a message is shown is the test's to say.
  std::vector<Message> messages;
  std::function<void()> whileMessageIsShown;
  std::vector<std::shared_ptr<Form>> loadedForms;
  float twipsPerPixelX = 15;
  float twipsPerPixelY = 15;

  // Downloads wait until the test finishes them; files are read at once.
  std::vector<std::shared_ptr<PendingLoad>> pendingLoads;
  /// Paths of documents that cannot be read.
  std::set<std::string> unreadable;
  std::deque<std::function<void()>> events;

  World();

  /// Puts a file into a folder given as the core writes it.
  void WriteFile(const std::string& corePath, std::string_view bytes) const;
  bool HasFile(const std::string& corePath) const;
  std::string ReadFile(const std::string& corePath) const;
};

/// The one world of the running test.
World& TheWorld();
/// An empty world, with a temporary folder of its own: the beginning of every test.
void Reset();

Form& TheForm();
Control& ControlNamed(const std::string& name);

/// Finishes the oldest load of the address with these bytes, or as failed; throws when there is
/// none.
void FinishLoad(const std::string& address, const std::string& bytes);
void FailLoad(const std::string& address);

bool IsTimerRunning();
/// Every timer goes off although what it caused before is still waiting.
void GoOff();

/// Handles events until none is left.
void HandleEvents();
/// Lets time pass: timers that are due go off, events are handled.
void Pass(int milliseconds);

}  // namespace fake
