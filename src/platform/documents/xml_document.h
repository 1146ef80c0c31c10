// One XML document that is loaded while the program goes on, and can be saved.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/documents/xml.h"

namespace platform {

/// Call order: OnReadyStateChange, then one Load or LoadXml. May be destroyed at any time, also
/// inside its own handler; nothing is told after that, and a load under way is given up.
class XmlDocument {
 public:
  XmlDocument();
  ~XmlDocument();
  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;

  /// Called exactly once for each Load, from the event loop, never from inside Load, when the
  /// document is complete.
  void OnReadyStateChange(std::function<void()> handler);

  /// Starts loading an https address or a file (a path as the core writes it). Every failure, of
  /// the network, an HTTP status other than success, or text that is not well-formed, is only
  /// reported through ParseErrorCode.
  void Load(const std::string& addressOrPath);

  /// Takes the document from a text (UTF-8), at once and without telling the handler. A text that
  /// is not well-formed leaves the document empty, with ParseErrorCode set.
  void LoadXml(std::string text);

  /// False while a load is under way.
  bool IsComplete() const;

  /// 0 after a load that succeeded and for a fresh document, anything else after a failed one.
  int ParseErrorCode() const;

  /// The document node; no node while the document holds nothing.
  XmlNode DocumentNode() const;

  /// The root element; no node while the document holds nothing.
  XmlNode DocumentElement() const;

  /// Writes the document as it came to a file, which is replaced as a whole or not at all.
  /// Throws when the document holds nothing (no file is touched) or cannot be written.
  void Save(const std::string& path) const;

 private:
  struct Impl;
  std::shared_ptr<Impl> mImpl;
};

}  // namespace platform
