// Promises of platform/documents/xml_list.h.
//
// SPDX-License-Identifier: MIT
#include "platform/documents/xml_list.h"

#include <stdexcept>

#include "platform/documents/xml.h"
#include "tests/contract/services_case.h"

namespace {

using namespace std::string_literals;
using platform::ReadXmlList;
using platform::XmlList;
using platform::XmlRecord;
using testing::ElementsAre;
using testing::IsEmpty;

class XmlLists : public ServiceCase {
 protected:
  XmlList mList = {"product", "type", "Voice", {"name", "id"}};

  std::vector<XmlRecord> Read(const std::string& text) const { return ReadXmlList(text, mList); }

  /// The records by the definition: with a tree and questions in XPath.
  std::vector<XmlRecord> Selected(const std::string& text) const {
    std::vector<XmlRecord> records;
    for (const auto& element : platform::ParseXml(text).SelectNodes(
             "/*/" + mList.element + "[" + mList.child + "='" + mList.text + "']")) {
      XmlRecord& record = records.emplace_back();
      for (const auto& field : mList.fields) {
        const auto child = element.SelectSingleNode(field);
        record.push_back(child ? std::optional(child.Text()) : std::nullopt);
      }
    }
    return records;
  }

  /// The name of the one product that these children make.
  std::optional<std::string> Name(const std::string& children) const {
    return Read("<r><product><type>Voice</type>" + children + "</product></r>").at(0).at(0);
  }
};

TEST_F(XmlLists, AnswersTheFieldsOfEachElementInDocumentOrder) {
  EXPECT_THAT(Read("<?xml version='1.0'?><r>\n"
                   "  <product><id>1</id><name>A</name><type>Voice</type></product>\n"
                   "  <product><type>Voice</type><name>B</name><id>2</id></product>\n"
                   "</r>"),
              ElementsAre(XmlRecord{"A", "1"}, XmlRecord{"B", "2"}));
}

TEST_F(XmlLists, AnswersNothingForAChildThatIsNotThere) {
  EXPECT_EQ(Name("<id>1</id>"), std::nullopt);
  EXPECT_EQ(Name("<name/>"), "");
}

TEST_F(XmlLists, AnswersNoRecordsOfADocumentWithoutSuchElements) {
  EXPECT_THAT(Read("<product><type>Voice</type></product>"), IsEmpty());
  EXPECT_THAT(Read("<r><other><type>Voice</type></other></r>"), IsEmpty());
  EXPECT_THAT(Read("<r><product/><product><type>voice</type></product></r>"), IsEmpty());
}

TEST_F(XmlLists, TakesTheFirstChildOfAName) {
  EXPECT_EQ(Name("<name>first</name><name>second</name>"), "first");
  EXPECT_EQ(Name("<name/><name>second</name>"), "");
}

TEST_F(XmlLists, AnswersTextWithoutBlanksAtBothEnds) {
  EXPECT_EQ(Name("<name> \t\r\n a  b \n</name>"), "a  b");
}

TEST_F(XmlLists, JoinsAllTextInsideAChild) {
  EXPECT_EQ(
      Name("<name>a<b>b<!-- no --><name>c</name></b><?no no?><![CDATA[<d>]]>&lt;&#101;</name>"),
      "abc<d><e");
}

TEST_F(XmlLists, ComparesTheDecidingTextAsItIsWritten) {
  const auto count = [&](const std::string& type) {
    return Read("<r><product><type>" + type + "</type></product></r>").size();
  };
  EXPECT_EQ(count("Voice"), 1u);
  EXPECT_EQ(count("V<b>oi</b>c&#101;"), 1u);
  EXPECT_EQ(count(" Voice"), 0u);
  EXPECT_EQ(count("Voice\n"), 0u);
  EXPECT_EQ(count("Voices"), 0u);
}

TEST_F(XmlLists, TakesAnElementOfWhichAnyChildDecidesSo) {
  EXPECT_EQ(Read("<r><product><type>Other</type><type>Voice</type></product></r>").size(), 1u);
  EXPECT_EQ(Read("<r><product><type>Voice</type><type>Other</type></product></r>").size(), 1u);
}

TEST_F(XmlLists, MayAnswerTheChildThatDecides) {
  mList.fields = {"type"};
  EXPECT_THAT(Read("<r><product><type>a</type><type>Voice</type></product></r>"),
              ElementsAre(XmlRecord{"a"}));
}

TEST_F(XmlLists, AnswersWhatQuestionsInXPathWouldSelect) {
  for (const std::string text :
       {"<r><product><x><type>Voice</type></x></product></r>",
        "<r><x><product><type>Voice</type></product></x></r>",
        "<r><product type='Voice'><name>a</name></product></r>",
        "<r><product><type>Voice</type><x><name>a</name></x><name>b</name></product></r>",
        "<r><product><product><type>Voice</type></product><type>Voice</type></product></r>",
        "<r xmlns='urn:a'><product><type>Voice</type></product></r>",
        "<a:r xmlns:a='urn:a'><product><type>Voice</type><a:name>a</a:name></product></a:r>",
        "<r xmlns:a='urn:a'><a:product><type>Voice</type></a:product></r>",
        "<r><product xmlns:a='urn:a'><a:type>Voice</a:type><name>a</name></product></r>",
        "<r><product><type>Voice</type><name xmlns='urn:a'>a</name><name>b</name></product></r>",
        "<r>text<product>text<type>Voice</type>text<name>a</name>text</product>text</r>",
        "<r><product><type>Voice</type><name>a</name></product><product><id>1</id></product></r>",
        "<product><product><type>Voice</type></product></product>"}) {
    EXPECT_EQ(Read(text), Selected(text)) << text;
  }
}

TEST_F(XmlLists, ReadsEveryEncodingThatAFileOfOursMayHave) {
  const auto name = [&](const std::string& text) { return Read(text).at(0).at(0); };
  const auto document = [](const std::string& letter) {
    return "<r><product><type>Voice</type><name>" + letter + "</name></product></r>";
  };
  EXPECT_EQ(name(document("\u00f6")), "\u00f6");
  EXPECT_EQ(name("\xEF\xBB\xBF" + document("\u00f6")), "\u00f6");
  EXPECT_EQ(name("<?xml version='1.0' encoding='ISO-8859-1'?>" + document("\xF6")), "\u00f6");
}

TEST_F(XmlLists, RefusesWhatATreeRefuses) {
  const std::string product = "<product><type>Voice</type></product>";
  for (const std::string& text :
       {""s, "<r>" + product, "<r>" + product + "</s>", "<r>&unknown;</r>"s, "<r>\xFF</r>"s,
        "<r>" + product + "</r>\0"s, "<r>" + product + "</r><r/>",
        "<!DOCTYPE r><r>" + product + "</r>",
        "<!DOCTYPE r [<!ENTITY e 'Voice'>]><r><product><type>&e;</type></product></r>"s}) {
    EXPECT_THROW(Read(text), std::runtime_error) << testing::PrintToString(text);
  }
}

TEST_F(XmlLists, RefusesADocumentThatIsNestedWithoutEnd) {
  std::string text = "<r>";
  for (int i = 0; i < 100'000; ++i) text += "<a>";
  for (int i = 0; i < 100'000; ++i) text += "</a>";
  EXPECT_THROW(Read(text + "</r>"), std::runtime_error);
}

TEST_F(XmlLists, ReadsAListOfManyElements) {
  std::string text = "<r>";
  for (int i = 0; i < 50'000; ++i) text += "<product><type>Voice</type><id>1</id></product>";
  EXPECT_EQ(Read(text + "</r>").size(), 50'000u);
}

}  // namespace
