// Promises of platform/documents/xml_document.h.
//
// SPDX-License-Identifier: MIT
#include "platform/documents/xml_document.h"

#include <memory>

#include "tests/contract/services_case.h"

namespace {

using platform::XmlDocument;

constexpr char kCatalogue[] = "<?xml version=\"1.0\"?>\r\n<r >\r\n <a>text</a>\r\n</r>\r\n";

class XmlDocuments : public ServiceCase {
 protected:
  /// Loads and waits until the handler was told.
  static void LoadAndWait(XmlDocument& document, const std::string& addressOrPath) {
    bool told = false;
    document.OnReadyStateChange([&] { told = true; });
    document.Load(addressOrPath);
    EXPECT_FALSE(told) << "told from inside Load";
    ASSERT_TRUE(peer::RunUntil([&] { return told; }));
    document.OnReadyStateChange(nullptr);
  }

  static void ExpectHoldsNothing(const XmlDocument& document) {
    EXPECT_NE(document.ParseErrorCode(), 0);
    EXPECT_TRUE(document.IsComplete());
    EXPECT_FALSE(document.DocumentNode());
    EXPECT_FALSE(document.DocumentElement());
    EXPECT_ANY_THROW(document.Save(In("saved.xml")));
    EXPECT_EQ(peer::FileBytes(In("saved.xml")), std::nullopt);
  }

  /// Handles whatever may still come.
  static void Settle() {
    XmlDocument last;
    LoadAndWait(last, In("none.xml"));
  }
};

TEST_F(XmlDocuments, AreCompleteAndEmptyWhenFresh) {
  const XmlDocument document;
  EXPECT_TRUE(document.IsComplete());
  EXPECT_EQ(document.ParseErrorCode(), 0);
  EXPECT_FALSE(document.DocumentNode());
  EXPECT_FALSE(document.DocumentElement());
  EXPECT_ANY_THROW(document.Save(In("saved.xml")));
}

TEST_F(XmlDocuments, LoadAFile) {
  peer::WriteFile(In("queue.xml"), kCatalogue);
  XmlDocument document;
  LoadAndWait(document, In("queue.xml"));
  EXPECT_TRUE(document.IsComplete());
  EXPECT_EQ(document.ParseErrorCode(), 0);
  EXPECT_EQ(document.DocumentElement().SelectSingleNode("a").Text(), "text");
  EXPECT_EQ(document.DocumentNode().SelectSingleNode("r/a").Text(), "text");
}

TEST_F(XmlDocuments, LoadAnAddress) {
  XmlDocument document;
  LoadAndWait(document, peer::Serve(200, kCatalogue));
  EXPECT_EQ(document.ParseErrorCode(), 0);
  EXPECT_EQ(document.DocumentElement().SelectSingleNode("a").Text(), "text");
}

TEST_F(XmlDocuments, AreNotCompleteWhileAnAddressLoads) {
  XmlDocument document;
  document.Load(peer::Serve(200, kCatalogue));
  EXPECT_FALSE(document.IsComplete());
  EXPECT_FALSE(document.DocumentElement());
  EXPECT_TRUE(peer::RunUntil([&] { return document.IsComplete(); }));
}

TEST_F(XmlDocuments, TellExactlyOnce) {
  peer::WriteFile(In("queue.xml"), kCatalogue);
  for (const std::string& what : {In("queue.xml"), peer::Serve(200, kCatalogue)}) {
    int told = 0;
    bool completeWhenTold = false;
    XmlDocument document;
    document.OnReadyStateChange([&] {
      ++told;
      completeWhenTold = document.IsComplete();
    });
    document.Load(what);
    ASSERT_TRUE(peer::RunUntil([&] { return told > 0; }));
    Settle();
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(completeWhenTold);
  }
}

TEST_F(XmlDocuments, FailForAMissingFile) {
  XmlDocument document;
  LoadAndWait(document, In("none.xml"));
  ExpectHoldsNothing(document);
}

TEST_F(XmlDocuments, FailForAFolder) {
  XmlDocument document;
  LoadAndWait(document, peer::Folder());
  ExpectHoldsNothing(document);
}

TEST_F(XmlDocuments, FailForAFileThatIsNotWellFormed) {
  peer::WriteFile(In("queue.xml"), "<queue>");
  XmlDocument document;
  LoadAndWait(document, In("queue.xml"));
  ExpectHoldsNothing(document);
}

TEST_F(XmlDocuments, FailForADocumentTypeDeclaration) {
  peer::WriteFile(In("queue.xml"), "<!DOCTYPE queue><queue/>");
  XmlDocument document;
  LoadAndWait(document, In("queue.xml"));
  ExpectHoldsNothing(document);
}

TEST_F(XmlDocuments, FailForAnAnswerThatIsNotWellFormed) {
  XmlDocument document;
  LoadAndWait(document, peer::Serve(200, "<html><p>Please log in</html>"));
  ExpectHoldsNothing(document);
}

TEST_F(XmlDocuments, FailForEveryStatusOtherThanSuccess) {
  for (const int status : {300, 304, 400, 401, 403, 404, 500, 503}) {
    XmlDocument document;
    LoadAndWait(document, peer::Serve(status, kCatalogue));
    EXPECT_NE(document.ParseErrorCode(), 0) << status;
    EXPECT_FALSE(document.DocumentElement()) << status;
  }
}

TEST_F(XmlDocuments, FailWhereNobodyAnswers) {
  XmlDocument document;
  LoadAndWait(document, peer::DeadAddress());
  ExpectHoldsNothing(document);
}

TEST_F(XmlDocuments, FailForOtherSchemes) {
  peer::WriteFile(In("queue.xml"), kCatalogue);
  for (const char* address :
       {"http://localhost/a.xml", "ftp://localhost/a.xml", "://", "https://"}) {
    XmlDocument document;
    LoadAndWait(document, address);
    ExpectHoldsNothing(document);
  }
}

TEST_F(XmlDocuments, TakeAText) {
  bool told = false;
  XmlDocument document;
  document.OnReadyStateChange([&] { told = true; });
  document.LoadXml("<queue><item>12</item></queue>");
  EXPECT_TRUE(document.IsComplete());
  EXPECT_EQ(document.ParseErrorCode(), 0);
  EXPECT_EQ(document.DocumentElement().Text(), "12");
  document.OnReadyStateChange(nullptr);
  Settle();
  EXPECT_FALSE(told);
}

TEST_F(XmlDocuments, AreEmptyAfterATextThatIsNotWellFormed) {
  XmlDocument document;
  document.LoadXml("<queue><item>a&b</item></queue>");
  ExpectHoldsNothing(document);
}

TEST_F(XmlDocuments, ForgetTheEarlierDocumentWhenATextFails) {
  XmlDocument document;
  document.LoadXml("<queue/>");
  document.LoadXml("<queue>");
  ExpectHoldsNothing(document);
}

TEST_F(XmlDocuments, SaveATextAsItIs) {
  XmlDocument document;
  document.LoadXml("<queue></queue>");
  document.Save(In("queue.xml"));
  EXPECT_EQ(peer::FileBytes(In("queue.xml")), "<queue></queue>");
}

TEST_F(XmlDocuments, SaveADownloadAsItCame) {
  XmlDocument document;
  LoadAndWait(document, peer::Serve(200, kCatalogue));
  document.Save(In("products.xml"));
  EXPECT_EQ(peer::FileBytes(In("products.xml")), kCatalogue);
}

TEST_F(XmlDocuments, SaveAFileAsItCame) {
  const std::string bytes("\xFF\xFE<\0r\0/\0>\0\n\0", 12);
  peer::WriteFile(In("queue.xml"), bytes);
  XmlDocument document;
  LoadAndWait(document, In("queue.xml"));
  document.Save(In("products.xml"));
  EXPECT_EQ(peer::FileBytes(In("products.xml")), bytes);
}

TEST_F(XmlDocuments, ReplaceTheFileThatTheySaveTo) {
  peer::WriteFile(In("queue.xml"), std::string(1000, 'x'));
  XmlDocument document;
  document.LoadXml("<queue/>");
  document.Save(In("queue.xml"));
  EXPECT_EQ(peer::FileBytes(In("queue.xml")), "<queue/>");
  EXPECT_EQ(peer::CountIn(peer::Folder()), 1u);
}

TEST_F(XmlDocuments, LeaveTheEarlierFileWhenTheyHoldNothing) {
  peer::WriteFile(In("queue.xml"), "earlier");
  XmlDocument document;
  document.LoadXml("<queue><item><</item></queue>");
  EXPECT_ANY_THROW(document.Save(In("queue.xml")));
  EXPECT_EQ(peer::FileBytes(In("queue.xml")), "earlier");
}

TEST_F(XmlDocuments, SaveNothingWithoutAFolder) {
  XmlDocument document;
  document.LoadXml("<queue/>");
  EXPECT_ANY_THROW(document.Save(In("nowhere\\queue.xml")));
  EXPECT_FALSE(peer::IsFolder(In("nowhere")));
}

TEST_F(XmlDocuments, SaveNothingOverAFolder) {
  peer::MakeFolder(In("queue.xml"));
  XmlDocument document;
  document.LoadXml("<queue/>");
  EXPECT_ANY_THROW(document.Save(In("queue.xml")));
  EXPECT_TRUE(peer::IsFolder(In("queue.xml")));
  EXPECT_EQ(peer::CountIn(peer::Folder()), 1u);
}

TEST_F(XmlDocuments, KeepTheTreeForANodeThatIsLeft) {
  platform::XmlNode root;
  {
    XmlDocument document;
    document.LoadXml("<r>text</r>");
    root = document.DocumentElement();
  }
  EXPECT_EQ(root.Text(), "text");
}

TEST_F(XmlDocuments, TellNothingOnceTheyHaveGone) {
  peer::WriteFile(In("queue.xml"), kCatalogue);
  for (const std::string& what : {In("queue.xml"), peer::Serve(200, kCatalogue)}) {
    bool told = false;
    {
      XmlDocument document;
      document.OnReadyStateChange([&] { told = true; });
      document.Load(what);
    }
    Settle();
    XmlDocument later;
    LoadAndWait(later, peer::Serve(200, kCatalogue));
    EXPECT_FALSE(told);
  }
}

TEST_F(XmlDocuments, MayGoInsideTheirOwnHandler) {
  peer::WriteFile(In("queue.xml"), kCatalogue);
  for (const std::string& what : {In("queue.xml"), peer::Serve(200, kCatalogue)}) {
    auto document = std::make_unique<XmlDocument>();
    const auto witness = std::make_shared<int>(0);
    document->OnReadyStateChange([&document, witness] {
      document.reset();
      ++*witness;
    });
    document->Load(what);
    EXPECT_TRUE(peer::RunUntil([&] { return *witness == 1; }));
    EXPECT_EQ(document, nullptr);
  }
}

TEST_F(XmlDocuments, LoadTwoAtATime) {
  XmlDocument one;
  XmlDocument two;
  one.Load(peer::Serve(200, "<r>one</r>"));
  two.Load(peer::Serve(200, "<r>two</r>"));
  ASSERT_TRUE(peer::RunUntil([&] { return one.IsComplete() && two.IsComplete(); }));
  EXPECT_EQ(one.DocumentElement().Text(), "one");
  EXPECT_EQ(two.DocumentElement().Text(), "two");
}

}  // namespace
