// A look at documents with libxml2 itself, past the program's own reading.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <libxml/HTMLparser.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/window/web_browser.h"

namespace fuzz {

struct FreeDocument {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;

inline bool IsElement(const xmlNode& node, std::string_view name) {
  return node.type == XML_ELEMENT_NODE && !node.ns &&
         reinterpret_cast<const char*>(node.name) == name;
}

/// All text inside, as it is written.
inline std::string ContentOf(xmlNode* node) {
  const std::unique_ptr<xmlChar, decltype(xmlFree)> content(xmlNodeGetContent(node), xmlFree);
  return content ? reinterpret_cast<const char*>(content.get()) : "";
}

inline std::vector<xmlNode*> ChildrenOf(const xmlNode* parent, std::string_view name) {
  std::vector<xmlNode*> children;
  for (xmlNode* child = parent ? parent->children : nullptr; child; child = child->next) {
    if (IsElement(*child, name)) children.push_back(child);
  }
  return children;
}

/// Null for what is not well-formed.
inline Document ReadXml(std::string_view bytes) {
  return Document(xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                                XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
}

/// A page as people's browsers read one, whatever is wrong with it.
inline Document ReadHtml(std::string_view page) {
  return Document(htmlReadMemory(
      page.data(), static_cast<int>(page.size()), nullptr, "UTF-8",
      HTML_PARSE_RECOVER | HTML_PARSE_NONET | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING));
}

/// The elements of a name anywhere below, in the order in which they stand in the page.
inline void AddElements(xmlNode* node, std::string_view name, std::vector<xmlNode*>& elements) {
  for (; node; node = node->next) {
    if (IsElement(*node, name)) elements.push_back(node);
    if (node->type == XML_ELEMENT_NODE) AddElements(node->children, name, elements);
  }
}

inline std::vector<xmlNode*> ElementsOf(const Document& page, std::string_view name) {
  std::vector<xmlNode*> elements;
  if (page) AddElements(page->children, name, elements);
  return elements;
}

inline std::string AttributeOf(xmlNode* element, const char* name) {
  const std::unique_ptr<xmlChar, decltype(xmlFree)> value(
      xmlGetNoNsProp(element, reinterpret_cast<const xmlChar*>(name)), xmlFree);
  return value ? reinterpret_cast<const char*>(value.get()) : "";
}

inline bool HasAttribute(xmlNode* element, const char* name) {
  return xmlHasProp(element, reinterpret_cast<const xmlChar*>(name)) != nullptr;
}

/// The input elements of a page, as a browser answers for them before anybody has ticked anything.
inline std::vector<platform::InputState> InputsOf(const Document& page) {
  std::vector<platform::InputState> inputs;
  for (xmlNode* input : ElementsOf(page, "input")) {
    inputs.push_back({AttributeOf(input, "id"), HasAttribute(input, "checked"),
                      HasAttribute(input, "disabled")});
  }
  return inputs;
}

}  // namespace fuzz
