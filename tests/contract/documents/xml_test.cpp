// Promises of platform/documents/xml.h.
//
// SPDX-License-Identifier: MIT
#include "platform/documents/xml.h"

#include <stdexcept>

#include "tests/contract/services_case.h"

namespace {

using namespace std::string_literals;
using platform::ParseXml;
using platform::XmlNode;
using testing::ElementsAre;

class Xml : public ServiceCase {
 protected:
  static std::vector<std::string> Texts(const std::vector<XmlNode>& nodes) {
    std::vector<std::string> texts;
    for (const XmlNode& node : nodes) texts.push_back(node.Text());
    return texts;
  }

  static XmlNode Root(const std::string& text) { return ParseXml(text).SelectSingleNode("/*"); }

  static std::string Nested(int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) text += "<a>";
    for (int i = 0; i < depth; ++i) text += "</a>";
    return text;
  }
};

TEST_F(Xml, SelectsRelativeToTheDocument) {
  const XmlNode document =
      ParseXml("<languages><language id='en'/><language id='sv'/></languages>");
  EXPECT_EQ(document.SelectNodes("languages/language[@id='sv' or @id='en']").size(), 2u);
  EXPECT_TRUE(document.SelectNodes("language").empty());
}

TEST_F(Xml, SelectsRelativeToTheRootElement) {
  const XmlNode root = Root(
      "<r><product><type>A</type></product><product><type>B</type></product>"
      "<inner><product><type>A</type></product></inner></r>");
  EXPECT_EQ(root.SelectNodes("product[type='A']").size(), 1u);
  EXPECT_EQ(root.SelectNodes("product").size(), 2u);
}

TEST_F(Xml, SelectsRelativeToAnElementInside) {
  const XmlNode item =
      Root("<r><item><key>a</key></item><item><key>b</key></item></r>").SelectNodes("item").at(1);
  EXPECT_EQ(item.SelectSingleNode("key").Text(), "b");
  EXPECT_EQ(item.SelectNodes("content | key").size(), 1u);
}

TEST_F(Xml, SelectsInDocumentOrder) {
  const XmlNode root = Root("<r><a>1</a><b>2</b><a>3</a></r>");
  EXPECT_THAT(Texts(root.SelectNodes("b | a")), ElementsAre("1", "2", "3"));
  EXPECT_THAT(Texts(root.SelectNodes("a[2]/preceding-sibling::*")), ElementsAre("1", "2"));
  EXPECT_THAT(Texts(Root("<r>1<a>2<b>3</b></a></r>").SelectNodes("a/b/ancestor-or-self::*")),
              ElementsAre("123", "23", "3"));
  EXPECT_THAT(Texts(root.SelectNodes("//a/following::* | //b/preceding::*")),
              ElementsAre("1", "2", "3"));
}

TEST_F(Xml, AnswersTheFirstNodeInDocumentOrder) {
  EXPECT_EQ(Root("<r><a>1</a><b>2</b></r>").SelectSingleNode("b | a").Text(), "1");
}

TEST_F(Xml, AnswersNoNodeWhereNothingIsSelected) {
  EXPECT_FALSE(Root("<r/>").SelectSingleNode("a"));
  EXPECT_TRUE(Root("<r/>").SelectNodes("a").empty());
}

TEST_F(Xml, ThrowsForAMalformedExpression) {
  const XmlNode root = Root("<r/>");
  for (const std::string xpath :
       {"item[id='o'clock']", "", "[", "a[", "'", "nosuch(", "nosuch()"}) {
    EXPECT_THROW(root.SelectNodes(xpath), std::runtime_error) << xpath;
  }
  EXPECT_THROW(root.SelectNodes("a\0"s), std::runtime_error);
  EXPECT_THROW(root.SelectNodes("a[.='\xFF']"), std::runtime_error);
}

TEST_F(Xml, ThrowsForAnExpressionThatSelectsNoNodes) {
  EXPECT_THROW(Root("<r/>").SelectNodes("1 + 1"), std::runtime_error);
  EXPECT_THROW(Root("<r/>").SelectNodes("unbound:a"), std::runtime_error);
}

TEST_F(Xml, EndsAQuestionThatIsMeantToBeSlow) {
  const std::string slow = "//*[count(//*[count(//*[count(//*)>0])>0])>0]";
  const auto rootOf = [](int children) {
    std::string text = "<r>";
    for (int i = 0; i < children; ++i) text += "<a/>";
    return Root(text + "</r>");
  };
  EXPECT_EQ(rootOf(4).SelectNodes(slow).size(), 5u);
  EXPECT_THROW(rootOf(3000).SelectNodes(slow), std::runtime_error);
}

TEST_F(Xml, AnswersTextWithoutBlanksAtBothEnds) {
  EXPECT_EQ(Root("<r> \t\r\n a  b \r\n</r>").Text(), "a  b");
  EXPECT_EQ(Root("<r>\u00A0a\u00A0</r>").Text(), "\u00A0a\u00A0");
}

TEST_F(Xml, AnswersTextWithoutTheBlanksOfCdataAndOfPreservedSpace) {
  EXPECT_EQ(Root("<r> <![CDATA[ a ]]>\n</r>").Text(), "a");
  EXPECT_EQ(Root("<r xml:space='preserve'> a </r>").Text(), "a");
}

TEST_F(Xml, JoinsAllTextInside) {
  EXPECT_EQ(Root("<r>a<b>b<!-- no --><c>c</c></b><?no no?><![CDATA[<d>]]>&lt;&#101;</r>").Text(),
            "abc<d><e");
  EXPECT_EQ(ParseXml("<r>a<b>b</b></r>").Text(), "ab");
}

TEST_F(Xml, AnswersTheTextOfTheFirstChildOfAName) {
  const XmlNode root =
      Root("<r xmlns:x='urn:x'>no<x:a>no</x:a><b><a>no</a></b><a> 1<c>2</c> </a><a>3</a><d/></r>");
  EXPECT_EQ(root.ChildText("a"), "12");
  EXPECT_EQ(root.ChildText("d"), "");
  EXPECT_EQ(root.ChildText("c"), std::nullopt);
  EXPECT_EQ(root.ChildText("A"), std::nullopt);
}

TEST_F(Xml, ComparesTextUntrimmed) {
  const XmlNode root = Root("<r><a> x </a></r>");
  EXPECT_TRUE(root.SelectNodes("self::*[a='x']").empty());
  EXPECT_EQ(root.SelectNodes("self::*[a=' x ']").size(), 1u);
}

TEST_F(Xml, AnswersAttributesAsTheyStand) {
  const XmlNode root = Root("<r id=' en ' empty='' entity='&lt;'/>");
  EXPECT_EQ(root.Attribute("id"), " en ");
  EXPECT_EQ(root.Attribute("empty"), "");
  EXPECT_EQ(root.Attribute("entity"), "<");
}

TEST_F(Xml, AnswersNothingForAnAttributeThatIsNotThere) {
  EXPECT_EQ(Root("<r id='en'/>").Attribute("ID"), std::nullopt);
  EXPECT_EQ(Root("<r xmlns:x='urn:x' x:id='en'/>").Attribute("id"), std::nullopt);
  EXPECT_EQ(ParseXml("<r id='en'/>").Attribute("id"), std::nullopt);
}

TEST_F(Xml, AnswersAnAttributeByItsQualifiedName) {
  EXPECT_EQ(Root("<r xml:lang='en'/>").Attribute("xml:lang"), "en");
}

TEST_F(Xml, KeepsTheTreeForANodeThatIsLeft) {
  XmlNode left;
  {
    const XmlNode document = ParseXml("<r><a>text</a></r>");
    left = document.SelectSingleNode("r/a");
  }
  EXPECT_EQ(left.Text(), "text");
  EXPECT_EQ(left.SelectSingleNode("/r").Text(), "text");
}

TEST_F(Xml, LeavesOutNodesThatWouldNotOutliveTheAnswer) {
  const auto nodes = Root("<r xmlns:x='urn:x'/>").SelectNodes("namespace::*");
  for (const XmlNode& node : nodes) EXPECT_NO_THROW(node.Text());
}

TEST_F(Xml, ThrowsLogicErrorsWhenNoNodeIsAsked) {
  const XmlNode none;
  EXPECT_FALSE(none);
  EXPECT_THROW(none.SelectNodes("a"), std::logic_error);
  EXPECT_THROW(none.SelectSingleNode("a"), std::logic_error);
  EXPECT_THROW(none.ChildText("a"), std::logic_error);
  EXPECT_THROW(none.Text(), std::logic_error);
  EXPECT_THROW(none.Attribute("id"), std::logic_error);
}

TEST_F(Xml, ReadsEveryEncodingThatAFileOfOursMayHave) {
  EXPECT_EQ(Root("<r>\u00f6</r>").Text(), "\u00f6");
  EXPECT_EQ(Root("\xEF\xBB\xBF<r>\u00f6</r>").Text(), "\u00f6");
  EXPECT_EQ(Root("<?xml version='1.0' encoding='ISO-8859-1'?><r>\xF6</r>").Text(), "\u00f6");
  EXPECT_EQ(Root("\xFF\xFE<\0r\0>\0\xF6\0<\0/\0r\0>\0"s).Text(), "\u00f6");
  EXPECT_EQ(Root("\xFE\xFF\0<\0r\0>\0\xF6\0<\0/\0r\0>"s).Text(), "\u00f6");
}

TEST_F(Xml, RefusesWhatIsNotWellFormed) {
  for (const std::string& text :
       {""s, " "s, "text"s, "<r>"s, "<r></s>"s, "<r/><r/>"s, "<r a='1' a='2'/>"s, "<r a=1/>"s,
        "<r>&unknown;</r>"s, "<r>\xFF</r>"s, "<r>&#0;</r>"s, "<r>\0</r>"s, "<r/>\0"s, "<r/>\0x"s,
        "<r\0/>"s, "<r>a & b</r>"s, "<?xml version='1.0'?>"s,
        "<?xml version='1.0' encoding='no-such'?><r/>"s}) {
    EXPECT_THROW(ParseXml(text), std::runtime_error) << testing::PrintToString(text);
  }
}

TEST_F(Xml, RefusesPrefixesThatNothingDeclares) {
  for (const std::string text : {"<x:r/>", "<r x:a='1'/>"}) {
    EXPECT_THROW(ParseXml(text), std::runtime_error) << text;
  }
}

TEST_F(Xml, RefusesEveryDocumentTypeDeclaration) {
  for (const std::string declaration :
       {"<!DOCTYPE r>", "<!DOCTYPE r []>", "<!DOCTYPE r SYSTEM 'file:///etc/passwd'>",
        "<!DOCTYPE r [<!ENTITY e SYSTEM 'file:///etc/hostname'>]>",
        "<!DOCTYPE r [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;&a;&a;'>]>"}) {
    EXPECT_THROW(ParseXml(declaration + "<r/>"), std::runtime_error) << declaration;
  }
}

TEST_F(Xml, RefusesADocumentThatIsNestedWithoutEnd) {
  EXPECT_NO_THROW(ParseXml(Nested(200)));
  EXPECT_THROW(ParseXml(Nested(100'000)), std::runtime_error);
}

TEST_F(Xml, ReadsACatalogueOfManyProducts) {
  std::string text = "<r>";
  for (int i = 0; i < 50'000; ++i)
    text += "<product><producttype>Windows Voices</producttype></product>";
  EXPECT_EQ(Root(text + "</r>").SelectNodes("product[producttype='Windows Voices']").size(),
            50'000u);
}

}  // namespace
