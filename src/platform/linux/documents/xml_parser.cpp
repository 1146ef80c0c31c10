// See xml_parser.h.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/documents/xml_parser.h"

#include <limits>
#include <new>
#include <stdexcept>

namespace platform {
namespace {

void BeSilent(void*, xmlErrorPtr) {}

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

}  // namespace

XmlParser NewXmlParser() {
  XmlParser parser(xmlNewParserCtxt());
  if (!parser) throw std::bad_alloc();
  parser->sax->internalSubset = RefuseDocumentType;
  parser->sax->serror = BeSilent;
  return parser;
}

std::shared_ptr<xmlDoc> ParseWith(xmlParserCtxt& parser, std::string_view bytes) {
  if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    throw std::runtime_error("the XML text is too long");
  }
  const std::shared_ptr<xmlDoc> tree(
      xmlCtxtReadMemory(&parser, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                        XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
      [](xmlDoc* document) { xmlFreeDoc(document); });
  if (!tree || !IsWhollyWellFormed(parser)) {
    throw std::runtime_error("the XML text is not well-formed or declares a document type");
  }
  return tree;
}

}  // namespace platform
