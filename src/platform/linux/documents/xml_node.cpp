// Documents and nodes on libxml2.
//
// SPDX-License-Identifier: MIT
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <limits>
#include <new>
#include <stdexcept>

#include "core/text.h"
#include "platform/documents/xml.h"

namespace platform {

struct XmlNode::Impl {
  std::shared_ptr<xmlDoc> tree;
  xmlNode* node = nullptr;
};

namespace {

// Work that one XPath question may take. Ids of the catalogue become part of questions; one that is
// written to be slow must end. The question for the products of a catalogue with a million elements
// stays far below.
constexpr unsigned long kXPathOperationLimit = 20'000'000;

struct FreeParser {
  void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};
struct FreeContext {
  void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
};
struct FreeExpression {
  void operator()(xmlXPathCompExpr* expression) const { xmlXPathFreeCompExpr(expression); }
};
struct FreeResult {
  void operator()(xmlXPathObject* result) const { xmlXPathFreeObject(result); }
};
struct FreeText {
  void operator()(xmlChar* text) const { xmlFree(text); }
};

using XPathContext = std::unique_ptr<xmlXPathContext, FreeContext>;
using XPathResult = std::unique_ptr<xmlXPathObject, FreeResult>;

template <class T>
T* Required(T* pointer) {
  if (!pointer) throw std::bad_alloc();
  return pointer;
}

const xmlChar* XmlText(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

// A handler of errors, which keeps them off the terminal. What it points to is const since libxml2
// 2.12.
template <class Error>
void IgnoreError(void*, Error*) {}

// For the few errors that the library writes out past a context's own handler.
void BeSilentToo(void*, const char*, ...) {}

// Met before anything inside the declaration is looked at, so that no entity is ever defined.
void RefuseDocumentType(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
  auto* parser = static_cast<xmlParserCtxt*>(context);
  parser->wellFormed = 0;
  xmlStopParser(parser);
}

// The library ends quietly at a NUL behind the root element, and lets undeclared prefixes pass.
bool IsWhollyWellFormed(const xmlParserCtxt& parser) {
  return parser.wellFormed && parser.nsWellFormed && parser.input &&
         parser.input->cur == parser.input->end;
}

XPathContext ContextFor(const XmlNode::Impl& start) {
  XPathContext context(Required(xmlXPathNewContext(start.tree.get())));
  xmlSetGenericErrorFunc(nullptr, BeSilentToo);
  context->error = IgnoreError;
  context->opLimit = kXPathOperationLimit;
  if (xmlXPathSetContextNode(start.node, context.get()) != 0) {
    throw std::runtime_error("the node cannot be asked");
  }
  return context;
}

XPathResult Evaluate(xmlXPathContext* context, const std::string& xpath) {
  if (xpath.find('\0') != std::string::npos || !xmlCheckUTF8(XmlText(xpath))) {
    throw std::runtime_error("the XPath expression is not text");
  }
  const std::unique_ptr<xmlXPathCompExpr, FreeExpression> expression(
      xmlXPathCtxtCompile(context, XmlText(xpath)));
  if (!expression) throw std::runtime_error("malformed XPath expression: " + xpath);
  XPathResult result(xmlXPathCompiledEval(expression.get(), context));
  if (!result || result->type != XPATH_NODESET) {
    throw std::runtime_error("the XPath expression selects no nodes: " + xpath);
  }
  return result;
}

std::string ContentOf(xmlNode* node) {
  const std::unique_ptr<xmlChar, FreeText> content(Required(xmlNodeGetContent(node)));
  return reinterpret_cast<const char*>(content.get());
}

std::string QualifiedName(const xmlAttr& attribute) {
  const std::string name = reinterpret_cast<const char*>(attribute.name);
  if (!attribute.ns || !attribute.ns->prefix) return name;
  return reinterpret_cast<const char*>(attribute.ns->prefix) + (':' + name);
}

const XmlNode::Impl& Asked(const std::shared_ptr<const XmlNode::Impl>& impl) {
  if (!impl) throw std::logic_error("no XML node was asked");
  return *impl;
}

}  // namespace

XmlNode ParseXml(std::string_view bytes) {
  if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw std::runtime_error("the XML text is too long");
  }
  const std::unique_ptr<xmlParserCtxt, FreeParser> parser(Required(xmlNewParserCtxt()));
  parser->sax->internalSubset = RefuseDocumentType;
  parser->sax->serror = IgnoreError;
  const std::shared_ptr<xmlDoc> tree(
      xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr,
                        nullptr, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
      [](xmlDoc* document) { xmlFreeDoc(document); });
  if (!tree || !IsWhollyWellFormed(*parser)) {
    throw std::runtime_error("the XML text is not well-formed or declares a document type");
  }
  // Numbers the elements, so that sorting a result looks at two numbers and not at the tree.
  xmlXPathOrderDocElems(tree.get());
  return XmlNode(std::make_shared<const XmlNode::Impl>(
      XmlNode::Impl{tree, reinterpret_cast<xmlNode*>(tree.get())}));
}

std::vector<XmlNode> XmlNode::SelectNodes(const std::string& xpath) const {
  const Impl& self = Asked(mImpl);
  const XPathContext context = ContextFor(self);
  const XPathResult result = Evaluate(context.get(), xpath);
  // In document order already, whatever the axes were.
  xmlNodeSet* selected = result->nodesetval;
  std::vector<XmlNode> nodes;
  for (int i = 0; i < xmlXPathNodeSetGetLength(selected); ++i) {
    xmlNode* node = xmlXPathNodeSetItem(selected, i);
    // Namespace nodes belong to the result, not to the tree, and would not outlive it.
    if (node->type == XML_NAMESPACE_DECL) continue;
    nodes.emplace_back(std::make_shared<const Impl>(Impl{self.tree, node}));
  }
  return nodes;
}

XmlNode XmlNode::SelectSingleNode(const std::string& xpath) const {
  const std::vector<XmlNode> nodes = SelectNodes(xpath);
  return nodes.empty() ? XmlNode() : nodes.front();
}

std::optional<std::string> XmlNode::ChildText(const std::string& name) const {
  const Impl& self = Asked(mImpl);
  for (xmlNode* child = xmlFirstElementChild(self.node); child;
       child = xmlNextElementSibling(child)) {
    if (child->ns || !xmlStrEqual(child->name, XmlText(name))) continue;
    return std::string(core::Trim(ContentOf(child), core::kXmlBlanks));
  }
  return std::nullopt;
}

std::string XmlNode::Text() const {
  xmlNode* node = Asked(mImpl).node;
  const std::string content = ContentOf(node);
  if (node->type == XML_ATTRIBUTE_NODE) return content;
  return std::string(core::Trim(content, core::kXmlBlanks));
}

std::optional<std::string> XmlNode::Attribute(const std::string& name) const {
  xmlNode* node = Asked(mImpl).node;
  if (node->type != XML_ELEMENT_NODE) return std::nullopt;
  for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
    if (QualifiedName(*attribute) == name) return ContentOf(reinterpret_cast<xmlNode*>(attribute));
  }
  return std::nullopt;
}

}  // namespace platform
