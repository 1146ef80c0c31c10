// XML trees: parse, ask by XPath, read. Reading only; loading from files and addresses, and saving,
// are xml_document.h's work.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// One node of a tree, or no node. Copies name the same node; a node keeps its tree alive.
/// Asking "no node" anything but whether it is one throws std::logic_error.
class XmlNode {
 public:
  struct Impl;

  XmlNode() = default;
  explicit XmlNode(std::shared_ptr<const Impl> impl) : mImpl(std::move(impl)) {}

  explicit operator bool() const { return mImpl != nullptr; }

  /// The nodes that `xpath` (XPath 1.0, no namespaces bound) selects, in document order, relative
  /// to this node: from the document node "languages/language" finds what lies below the root
  /// element `languages`, from the root element "product" finds its children.
  /// Throws std::runtime_error when the expression is malformed.
  std::vector<XmlNode> SelectNodes(const std::string& xpath) const;

  /// The first of them, or no node.
  XmlNode SelectSingleNode(const std::string& xpath) const;

  /// Text() of the first child element of this name, in no namespace; absent when there is none.
  std::optional<std::string> ChildText(const std::string& name) const;

  /// The node's text content: of an element, all text inside it joined, without the blanks, tabs
  /// and line ends at both ends, whether or not they come from a CDATA section or xml:space is
  /// "preserve" (MSXML would keep these two). XPath comparisons see the text untrimmed.
  std::string Text() const;

  /// An attribute's value as it stands; absent when the element has no such attribute.
  std::optional<std::string> Attribute(const std::string& name) const;

 private:
  std::shared_ptr<const Impl> mImpl;
};

/// The document node of the tree that `bytes` hold, in the encoding that mark or declaration say.
/// Throws std::runtime_error where they are not well-formed, or hold a document type declaration:
/// no document of ours has one, and entities are the way to attack a parser.
XmlNode ParseXml(std::string_view bytes);

}  // namespace platform
