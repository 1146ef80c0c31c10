// What a window is made of, seen as one kind of thing, so that translation and layout can walk over
// a window without knowing what is in it. Positions and sizes are twips (1440 to the inch).
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

/// A font as the language list names it: face name and Windows character set number.
/// A face that the system lacks is replaced by the system's own.
struct Font {
  std::string name;
  int charset = 0;
};

/// A panel of a status bar, a button of a tool bar or a tab of a tab strip.
struct ContainerItem {
  std::string kind;  // type name; tool-bar buttons may be of "IButton"
  std::string tag;
  std::string key;
  std::string name;
  int index = 0;  // from 1
  std::function<void(const std::string&)> setCaption;
  std::function<void(const std::string&)> setToolTipText;
};

/// A handle on one control of a form; copies name the same control. A property that a kind of
/// control lacks throws Unsupported, read or set; after its form has gone every property throws
/// std::logic_error.
class Control {
 public:
  struct Impl;
  explicit Control(std::shared_ptr<Impl> impl) : mImpl(std::move(impl)) {}

  /// The type name: "CommandButton", "Label", "PictureBox", "WebBrowser", ...
  std::string Kind() const;
  std::string Name() const;
  /// Free text that replaces window and control name in translation keys; usually empty.
  std::string Tag() const;

  /// In a caption "&" marks the letter after it as the mnemonic and "&&" is one ampersand, for
  /// kinds that have mnemonics (CommandButton); elsewhere it is text.
  std::string Caption() const;
  void SetCaption(const std::string& caption);
  std::string ToolTipText() const;
  void SetToolTipText(const std::string& text);
  bool Enabled() const;
  void SetEnabled(bool enabled);
  void SetFont(const Font& font);
  void SetRightToLeft(bool rightToLeft);

  float Left() const;
  float Top() const;
  float Width() const;
  float Height() const;
  /// Measured from the leading edge: in a right-to-left form the back end mirrors.
  void SetLeft(float twips);
  void SetTop(float twips);
  /// A negative size throws Unsupported and changes nothing.
  void SetWidth(float twips);
  void SetHeight(float twips);

  /// Lets a screen reader speak `text` without a change of focus; for a Label. Screen readers
  /// ignore a window that is not active: then the last text is kept and announced once when the
  /// form becomes active. An empty text is not announced. Nothing changes on the screen.
  void Announce(const std::string& text);

  /// Puts the control in front of all others.
  void BringToFront();

  /// What a container holds: panels of a "StatusBar", buttons of a "Toolbar", tabs of a "TabStrip".
  std::vector<ContainerItem> Items() const;

  /// A command button was pressed, by pointer, key or assistive technology.
  void OnClick(std::function<void()> handler);

 private:
  friend class WebBrowser;
  std::shared_ptr<Impl> mImpl;
};

}  // namespace platform
