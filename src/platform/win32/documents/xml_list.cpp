// Lists on MSXML 6, by its own tree: a question in XPath costs little there.
//
// SPDX-License-Identifier: MIT
#include "platform/documents/xml_list.h"

#include "platform/documents/xml.h"

namespace platform {
namespace {

XmlRecord Record(const XmlNode& element, const std::vector<std::string>& fields) {
  XmlRecord record;
  for (const std::string& field : fields) {
    const XmlNode child = element.SelectSingleNode(field);
    record.push_back(child ? std::optional(child.Text()) : std::nullopt);
  }
  return record;
}

}  // namespace

std::vector<XmlRecord> ReadXmlList(std::string_view bytes, const XmlList& list) {
  const std::string elements = "/*/" + list.element + "[" + list.child + "='" + list.text + "']";
  std::vector<XmlRecord> records;
  for (const XmlNode& element : ParseXml(bytes).SelectNodes(elements)) {
    records.push_back(Record(element, list.fields));
  }
  return records;
}

}  // namespace platform
