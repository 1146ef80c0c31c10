// Lists, read from the parser's events: a tree of a long catalogue would take three times as long
// to make, and some ten times its bytes of memory.
//
// SPDX-License-Identifier: MIT
#include "platform/documents/xml_list.h"

#include <cstddef>
#include <stdexcept>
#include <utility>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/linux/documents/xml_parser.h"

namespace platform {
namespace {

class ListReader {
 public:
  explicit ListReader(const XmlList& list) : mList(list) {}

  /// An absent name is one that is in a namespace.
  void OnBegin(std::optional<std::string_view> name) {
    ++mDepth;
    if (mDepth == kElement) BeginElement(name);
    if (mDepth == kChild && mInElement) BeginChild(name);
  }
  void OnText(std::string_view text) {
    if (mInChild) mText += text;
  }
  void OnEnd() {
    if (mDepth == kChild && mInChild) EndChild();
    if (mDepth == kElement && mInElement) EndElement();
    --mDepth;
  }

  std::vector<XmlRecord> TakeRecords() { return std::move(mRecords); }

 private:
  // Below the root, which is at 1.
  static constexpr int kElement = 2;
  static constexpr int kChild = 3;

  void BeginElement(std::optional<std::string_view> name) {
    mInElement = name == mList.element;
    mIsWanted = false;
    mRecord.assign(mList.fields.size(), std::nullopt);
  }

  void BeginChild(std::optional<std::string_view> name) {
    mDecides = name == mList.child;
    mField = 0;
    while (mField < mList.fields.size() && name != mList.fields[mField]) ++mField;
    const bool isField = mField < mList.fields.size() && !mRecord[mField];
    mInChild = mDecides || isField;
    mText.clear();
  }

  void EndChild() {
    mInChild = false;
    if (mDecides && mText == mList.text) mIsWanted = true;
    if (mField == mList.fields.size() || mRecord[mField]) return;
    mRecord[mField].emplace(core::Trim(mText, core::kXmlBlanks));
  }

  void EndElement() {
    mInElement = false;
    if (mIsWanted) mRecords.push_back(std::move(mRecord));
  }

  const XmlList& mList;
  std::vector<XmlRecord> mRecords;
  int mDepth = 0;

  // Of the element that is being read.
  bool mInElement = false;
  bool mIsWanted = false;
  XmlRecord mRecord;

  // Of its child.
  bool mInChild = false;
  bool mDecides = false;
  std::size_t mField = 0;
  std::string mText;
};

// Runs one step of the reader for the library, which knows no exceptions.
template <class Step>
void Tell(void* context, Step step) {
  auto* parser = static_cast<xmlParserCtxt*>(context);
  if (core::Attempt([&] { step(*static_cast<ListReader*>(parser->_private)); })) return;
  parser->wellFormed = 0;
  xmlStopParser(parser);
}

const char* Letters(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

void OnBegin(void* context, const xmlChar* name, const xmlChar*, const xmlChar* address, int,
             const xmlChar**, int, int, const xmlChar**) {
  Tell(context, [&](ListReader& reader) {
    reader.OnBegin(address ? std::nullopt : std::optional<std::string_view>(Letters(name)));
  });
}

void OnEnd(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
  Tell(context, [](ListReader& reader) { reader.OnEnd(); });
}

void OnText(void* context, const xmlChar* text, int length) {
  Tell(context, [&](ListReader& reader) {
    reader.OnText({Letters(text), static_cast<std::size_t>(length)});
  });
}

}  // namespace

std::vector<XmlRecord> ReadXmlList(std::string_view bytes, const XmlList& list) {
  const XmlParser parser = NewXmlParser();
  parser->sax->startElementNs = OnBegin;
  parser->sax->endElementNs = OnEnd;
  parser->sax->characters = OnText;
  parser->sax->ignorableWhitespace = OnText;
  parser->sax->cdataBlock = OnText;
  parser->sax->comment = nullptr;
  parser->sax->processingInstruction = nullptr;
  ListReader reader(list);
  parser->_private = &reader;
  ParseWith(*parser, bytes);
  return reader.TakeRecords();
}

}  // namespace platform
