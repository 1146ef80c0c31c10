// Documents that are long lists of alike elements, read in one pass and without a tree: a catalogue
// has thousands of elements, of which a few texts are wanted.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// What is wanted of a list: the elements that the XPath question "element[child='text']", put to
/// the root element, selects, and of each of them the children called `fields`. Names are without
/// namespace and apostrophes; the texts of children are compared as they are written.
struct XmlList {
  std::string element;
  std::string child;
  std::string text;
  std::vector<std::string> fields;
};

/// One element of the list: XmlNode::Text() of its first child of each name in `fields`, in their
/// order; absent when there is no such child.
using XmlRecord = std::vector<std::optional<std::string>>;

/// The records of the document that `bytes` hold, in document order. Throws as ParseXml does.
std::vector<XmlRecord> ReadXmlList(std::string_view bytes, const XmlList& list);

}  // namespace platform
