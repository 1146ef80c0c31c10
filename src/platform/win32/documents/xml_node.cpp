// Documents and nodes on MSXML 6. Bytes come from the network and are trusted in nothing: nothing
// outside the bytes is looked at, no document type declaration is accepted, depth and size are
// limited.
//
// White space is preserved in the tree and trimmed by Text(), so that a question in XPath sees the
// text as it is written, on every version of the library.
//
// SPDX-License-Identifier: MIT
#include <msxml2.h>

#include <cstring>
#include <limits>
#include <stdexcept>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/documents/xml.h"
#include "platform/win32/com.h"

namespace platform {

struct XmlNode::Impl {
  ComPtr<IXMLDOMNode> node;
};

namespace {

// The headers declare these without an import library that defines them.
constexpr CLSID kDocument60 = {
    0x88d96a05, 0xf192, 0x11d4, {0xa6, 0x5f, 0x00, 0x40, 0x96, 0x32, 0x51, 0xe5}};
constexpr IID kIXMLDOMDocument2 = {
    0x2933bf95, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
constexpr IID kIXMLDOMElement = {
    0x2933bf86, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};

// Elements inside elements; the library's own limit, and that of the Linux program's library.
constexpr long kMostDepth = 256;
// In KB. A download may bring 64 MB; as UTF-16 inside the library it is counted as it came.
constexpr long kMostSize = 64 * 1024;

void SetProperty(const ComPtr<IXMLDOMDocument2>& document, std::wstring_view name,
                 const VARIANT& value) {
  // Where a version of the library knows no such limit, its own hold.
  core::Attempt([&] { Check(document->setProperty(Bstr(name).Get(), value)); });
}

ComPtr<IXMLDOMDocument2> NewDocument() {
  auto document = CreateObject<IXMLDOMDocument2>(kDocument60, kIXMLDOMDocument2);
  Check(document->put_async(VARIANT_FALSE));
  Check(document->put_validateOnParse(VARIANT_FALSE));
  Check(document->put_resolveExternals(VARIANT_FALSE));
  Check(document->put_preserveWhiteSpace(VARIANT_TRUE));
  Variant prohibited;
  prohibited.vt = VT_BOOL;
  prohibited.boolVal = VARIANT_TRUE;
  SetProperty(document, L"ProhibitDTD", prohibited);
  SetProperty(document, L"MaxElementDepth", Variant(kMostDepth));
  SetProperty(document, L"MaxXMLSize", Variant(kMostSize));
  SetProperty(document, L"SelectionLanguage", Variant(L"XPath"));
  return document;
}

/// The bytes as the library takes them from memory.
void SetBytes(VARIANT& variant, std::string_view bytes) {
  if (bytes.size() > std::numeric_limits<ULONG>::max()) {
    throw std::runtime_error("the XML text is too long");
  }
  SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  if (!array) throw std::bad_alloc();
  variant.vt = VT_ARRAY | VT_UI1;
  variant.parray = array;
  void* memory = nullptr;
  Check(SafeArrayAccessData(array, &memory));
  if (!bytes.empty()) std::memcpy(memory, bytes.data(), bytes.size());
  Check(SafeArrayUnaccessData(array));
}

/// A NUL is no character of XML, and the library of Wine ends quietly at one. In UTF-16, where half
/// of the bytes may be NUL, one of the first two is, or they are the byte-order mark.
bool HoldsNul(std::string_view bytes) {
  const std::string_view start = bytes.substr(0, 2);
  const bool isUtf16 =
      start == "\xFF\xFE" || start == "\xFE\xFF" || start.find('\0') != std::string_view::npos;
  return !isUtf16 && bytes.find('\0') != std::string_view::npos;
}

/// Looked at once more: not every implementation of the library obeys ProhibitDTD.
bool DeclaresDocumentType(const ComPtr<IXMLDOMDocument2>& document) {
  ComPtr<IXMLDOMDocumentType> type;
  return document->get_doctype(type.Out()) == S_OK && type;
}

bool HasRoot(const ComPtr<IXMLDOMDocument2>& document) {
  ComPtr<IXMLDOMElement> root;
  return document->get_documentElement(root.Out()) == S_OK && root;
}

const XmlNode::Impl& Asked(const std::shared_ptr<const XmlNode::Impl>& impl) {
  if (!impl) throw std::logic_error("no XML node was asked");
  return *impl;
}

XmlNode NodeFor(ComPtr<IXMLDOMNode> node) {
  return XmlNode(std::make_shared<const XmlNode::Impl>(XmlNode::Impl{std::move(node)}));
}

ComPtr<IXMLDOMNodeList> Select(const ComPtr<IXMLDOMNode>& node, const std::string& xpath) {
  if (xpath.find('\0') != std::string::npos) {
    throw std::runtime_error("the XPath expression is not text");
  }
  ComPtr<IXMLDOMNodeList> list;
  Check(node->selectNodes(Bstr(CheckedWideText(xpath)).Get(), list.Out()));
  return list;
}

/// Empty behind the last one.
ComPtr<IXMLDOMNode> NextOf(const ComPtr<IXMLDOMNodeList>& list) {
  ComPtr<IXMLDOMNode> node;
  Check(list->nextNode(node.Out()));
  return node;
}

DOMNodeType TypeOf(const ComPtr<IXMLDOMNode>& node) {
  DOMNodeType type = NODE_INVALID;
  Check(node->get_nodeType(&type));
  return type;
}

}  // namespace

XmlNode ParseXml(std::string_view bytes) {
  const ComPtr<IXMLDOMDocument2> document = NewDocument();
  Variant source;
  SetBytes(source, bytes);
  VARIANT_BOOL loaded = VARIANT_FALSE;
  Check(document->load(source, &loaded));
  if (loaded == VARIANT_FALSE || HoldsNul(bytes) || DeclaresDocumentType(document) ||
      !HasRoot(document)) {
    throw std::runtime_error("the XML text is not well-formed or declares a document type");
  }
  return NodeFor(ComPtr<IXMLDOMNode>::Share(document.Get()));
}

std::vector<XmlNode> XmlNode::SelectNodes(const std::string& xpath) const {
  const ComPtr<IXMLDOMNodeList> list = Select(Asked(mImpl).node, xpath);
  std::vector<XmlNode> nodes;
  while (auto node = NextOf(list)) nodes.push_back(NodeFor(std::move(node)));
  return nodes;
}

XmlNode XmlNode::SelectSingleNode(const std::string& xpath) const {
  auto node = NextOf(Select(Asked(mImpl).node, xpath));
  return node ? NodeFor(std::move(node)) : XmlNode();
}

std::optional<std::string> XmlNode::ChildText(const std::string& name) const {
  const XmlNode child = SelectSingleNode(name);
  return child ? std::optional(child.Text()) : std::nullopt;
}

std::string XmlNode::Text() const {
  const ComPtr<IXMLDOMNode>& node = Asked(mImpl).node;
  Bstr text;
  Check(node->get_text(text.Out()));
  const std::string content = text.Utf8();
  if (TypeOf(node) == NODE_ATTRIBUTE) return content;
  return std::string(core::Trim(content, core::kXmlBlanks));
}

std::optional<std::string> XmlNode::Attribute(const std::string& name) const {
  const ComPtr<IXMLDOMNode>& node = Asked(mImpl).node;
  if (TypeOf(node) != NODE_ELEMENT) return std::nullopt;
  Variant value;
  Check(node.As<IXMLDOMElement>(kIXMLDOMElement)->getAttribute(Bstr(name).Get(), &value));
  if (value.vt != VT_BSTR) return std::nullopt;
  return value.Utf8();
}

}  // namespace platform
