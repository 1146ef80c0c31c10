// How bytes are given to libxml2. They come from the network and are trusted in nothing: no
// network, no external entity, no document type declaration, and the library's own limits on depth
// and length stay in force.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <libxml/parser.h>

#include <memory>
#include <string_view>

namespace platform {

struct FreeXmlParser {
  void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};
using XmlParser = std::unique_ptr<xmlParserCtxt, FreeXmlParser>;

/// One that says nothing on the terminal and stops at a document type declaration. It makes a tree,
/// unless its handlers are replaced.
XmlParser NewXmlParser();

/// The tree. Throws std::runtime_error where the bytes are not well-formed.
std::shared_ptr<xmlDoc> ParseWith(xmlParserCtxt& parser, std::string_view bytes);

}  // namespace platform
