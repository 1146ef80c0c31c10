// From a catalogue document to voice records: what is read, left out, and in which order it stands.
//
// SPDX-License-Identifier: MIT
#include "catalogue/catalogue_reader.h"

#include <gmock/gmock.h>

#include "tests/unit/catalogue/catalogue_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CatalogueReader : public CatalogueTest {
 protected:
  std::string mLanguage = "en";

  std::vector<clsVoice> ReadDocument(const std::string& document) const {
    return ReadCatalogue(Root(document), mLanguage, &mInstaller);
  }

  std::vector<clsVoice> Read(const std::string& products) const {
    return ReadDocument("<catalogue>" + products + "</catalogue>");
  }

  clsVoice ReadOne(const std::string& product) const { return Read(product).at(0); }

  std::vector<std::string> Names(const std::string& products) const {
    std::vector<std::string> names;
    for (const clsVoice& voice : Read(products)) names.push_back(voice.Name);
    return names;
  }

  /// Names of voices without a language label, so that names alone decide.
  std::vector<std::string> Sorted(const std::vector<std::string>& names) const {
    std::string products;
    for (const auto& name : names) products += Product{.name = name}.Without("language");
    return Names(products);
  }

  std::int16_t Megabytes(const std::string& bytes) const {
    return ReadOne(Product{.size = bytes}.Xml()).Size;
  }
};

TEST_F(CatalogueReader, FillsTheRecordFromTheProduct) {
  const clsVoice voice = ReadOne(Product{
      .name = "Vocalizer Expressive Daniel Voice", .id = "12", .size = "75400000", .code = "ABC"}
                                     .Xml());
  EXPECT_EQ(voice.Name, "English (UK) Daniel");
  EXPECT_EQ(voice.ID, "12");
  EXPECT_EQ(voice.Size, 75);
  EXPECT_EQ(voice.ProductCode(), "{ABC}");
  EXPECT_EQ(voice.Link, "https://voices.example/12");
}

TEST_F(CatalogueReader, ReadsProductsOfTheTypeWindowsVoicesAlone) {
  EXPECT_THAT(Names(Product{.name = "Anna", .type = "Windows voices"}.Xml() +
                    Product{.name = "Berta", .type = " Windows Voices"}.Xml() +
                    Product{.name = "Clara", .type = "Other"}.Xml() +
                    Product{.name = "Dora"}.Without("producttype") + Product{.name = "Elsa"}.Xml()),
              ElementsAre("English (UK) Elsa"));
}

TEST_F(CatalogueReader, ReadsDirectChildrenOfTheRootAlone) {
  EXPECT_THAT(Read("<group>" + Product().Xml() + "</group>"), IsEmpty());
}

TEST_F(CatalogueReader, TakesARootElementOfAnyName) {
  const auto voices = ReadDocument("<x>" + Product().Xml() + "</x>");
  EXPECT_EQ(voices.size(), 1U);
}

TEST_F(CatalogueReader, ReadsNothingFromACatalogueWithoutVoices) {
  EXPECT_THAT(Read(""), IsEmpty());
}

TEST_F(CatalogueReader, IgnoresOtherElementsOfAProduct) {
  EXPECT_THAT(Names("<product><price>9</price><producttype>Windows Voices</producttype>"
                    "<name>Anna</name><language>French</language></product>"),
              ElementsAre("French Anna"));
}

TEST_F(CatalogueReader, LeavesOutDemonstrationsInAnyLetterCase) {
  EXPECT_THAT(Names(Product{.name = "Anna Demo"}.Xml() + Product{.name = "DEMONSTRATION"}.Xml() +
                    Product{.name = "xdEmOx"}.Xml() + Product{.name = "Clara"}.Xml()),
              ElementsAre("English (UK) Clara"));
}

TEST_F(CatalogueReader, LeavesOutDemonstrationsThatAreInstalledToo) {
  Install("{A}");
  EXPECT_THAT(Read(Product{.name = "Anna Demo", .code = "A"}.Xml()), IsEmpty());
  EXPECT_THAT(fake::TheWorld().installerQuestions, IsEmpty());
}

TEST_F(CatalogueReader, KeepsAVoiceWhoseLanguageIsCalledDemo) {
  EXPECT_THAT(Names(Product{.name = "Anna", .language = "Demotic"}.Xml()),
              ElementsAre("Demotic Anna"));
}

TEST_F(CatalogueReader, DropsVendorWordsFromTheNameAndNotFromTheLanguage) {
  EXPECT_THAT(Names(Product{.name = "RealSpeak Anna Voice", .language = "RealSpeak Voice"}.Xml()),
              ElementsAre("RealSpeak Voice Anna"));
}

TEST_F(CatalogueReader, KeepsAProductWithoutName) {
  EXPECT_THAT(Names(Product{.language = "French"}.Without("name")), ElementsAre("French "));
}

TEST_F(CatalogueReader, KeepsTheNameOfAProductWithoutLanguage) {
  EXPECT_THAT(Names(Product{.name = "RealSpeak Anna"}.Without("language")), ElementsAre("Anna"));
}

TEST_F(CatalogueReader, LeavesMembersEmptyForWhichTheProductHasNoElement) {
  const Product product{.id = "12", .code = "A"};
  EXPECT_EQ(ReadOne(product.Without("id")).ID, "");
  EXPECT_EQ(ReadOne(product.Without("size")).Size, 0);
  EXPECT_EQ(ReadOne(product.Without("productcode")).ProductCode(), "");
  EXPECT_EQ(ReadOne(product.Without("link")).Link, "");
}

TEST_F(CatalogueReader, GoesOnAfterEveryElementThatIsMissing) {
  const Product product{.name = "Anna", .language = "French", .id = "12", .code = "A"};
  for (const char* element : {"name", "language", "id", "size", "productcode", "link"}) {
    const clsVoice voice = ReadOne(product.Without(element));
    const auto has = [&](const std::string& one) { return one != element; };
    EXPECT_EQ(voice.Name.find("Anna") != std::string::npos, has("name")) << element;
    EXPECT_EQ(voice.Name.find("French") != std::string::npos, has("language")) << element;
    EXPECT_EQ(voice.ID, has("id") ? "12" : "") << element;
    EXPECT_EQ(voice.Size, has("size") ? 75 : 0) << element;
    EXPECT_EQ(voice.ProductCode(), has("productcode") ? "{A}" : "") << element;
    EXPECT_EQ(voice.Link.empty(), !has("link")) << element;
  }
}

TEST_F(CatalogueReader, TrimsTheTextOfElements) {
  EXPECT_EQ(ReadOne(Product{.id = "\n  12\t"}.Xml()).ID, "12");
}

TEST_F(CatalogueReader, RoundsBytesToMegabytes) {
  EXPECT_EQ(Megabytes("75400000"), 75);
  EXPECT_EQ(Megabytes("75600000"), 76);
  EXPECT_EQ(Megabytes("499999"), 0);
  EXPECT_EQ(Megabytes("400000"), 0);
  EXPECT_EQ(Megabytes("500001"), 1);
}

TEST_F(CatalogueReader, RoundsHalvesToTheEvenNeighbour) {
  EXPECT_EQ(Megabytes("500000"), 0);
  EXPECT_EQ(Megabytes("1500000"), 2);
  EXPECT_EQ(Megabytes("2500000"), 2);
  EXPECT_EQ(Megabytes("3500000"), 4);
}

TEST_F(CatalogueReader, TakesSizesUpToTheEndsOf32Bits) {
  EXPECT_EQ(Megabytes("2147483647"), 2147);
  EXPECT_EQ(Megabytes("-2147483648"), -2147);
}

TEST_F(CatalogueReader, HasNoSizeForNumbersBeyond32Bits) {
  EXPECT_EQ(Megabytes("2147483648"), 0);
  EXPECT_EQ(Megabytes("-2147483649"), 0);
  EXPECT_EQ(Megabytes("99999999999999999999"), 0);
}

TEST_F(CatalogueReader, TakesSizesWithASignAndBlanksAround) {
  EXPECT_EQ(Megabytes(" +75000000 "), 75);
  EXPECT_EQ(Megabytes("-75000000"), -75);
}

TEST_F(CatalogueReader, HasNoSizeForTextThatIsNoWholeNumber) {
  for (const char* text : {"", "much", "75 MB", "75000000.0", "7.5e7", "0x47868C0", "75,000,000"}) {
    EXPECT_EQ(Megabytes(text), 0) << text;
  }
}

TEST_F(CatalogueReader, OffersTheSwedishVoicesToSwedishUsers) {
  mLanguage = "sv";
  EXPECT_THAT(Names(Product{.name = "Erik", .language = "Swedish", .code = "A"}.Xml() +
                    Product{.name = "Elin", .language = "Swedish", .code = "B"}.Xml()),
              ElementsAre("Swedish Elin", "Swedish Erik"));
}

TEST_F(CatalogueReader, DropsTheSwedishVoicesForOthers) {
  for (const char* language : {"en", "", "SV", "sv-fi"}) {
    mLanguage = language;
    EXPECT_THAT(Read(Product{.name = "Erik", .code = "A"}.Xml() +
                     Product{.name = "Elin", .code = "B"}.Xml()),
                IsEmpty())
        << language;
  }
}

TEST_F(CatalogueReader, KeepsTheSwedishVoicesOfThoseWhoHaveThem) {
  Install("{A}");
  EXPECT_THAT(Names(Product{.name = "Erik", .language = "Swedish", .code = "A"}.Xml() +
                    Product{.name = "Elin", .language = "Swedish", .code = "B"}.Xml()),
              ElementsAre("Swedish Erik"));
}

TEST_F(CatalogueReader, DropsTheSwedishVoicesWithoutWindowsInstaller) {
  const auto catalogue = Root("<c>" + Product{.name = "Erik", .code = "A"}.Xml() + "</c>");
  EXPECT_EQ(ReadCatalogue(catalogue, "sv", nullptr).size(), 1U);
  EXPECT_THAT(ReadCatalogue(catalogue, "en", nullptr), IsEmpty());
}

TEST_F(CatalogueReader, KnowsTheSwedishVoicesByAnyPartOfTheDisplayName) {
  EXPECT_THAT(Read(Product{.name = "Anna", .language = "Erikson"}.Xml() +
                   Product{.name = "Celina Elina"}.Xml()),
              IsEmpty());
  EXPECT_EQ(Read(Product{.name = "erik ELIN Celin"}.Xml()).size(), 1U);
}

TEST_F(CatalogueReader, SortsWithoutRegardToLetterCase) {
  EXPECT_THAT(Sorted({"Beta", "alpha"}), ElementsAre("alpha", "Beta"));
  EXPECT_THAT(Sorted({"gamma", "Beta", "alpha", "Delta"}),
              ElementsAre("alpha", "Beta", "Delta", "gamma"));
}

TEST_F(CatalogueReader, SortsAccentsNextToTheirLetter) {
  EXPECT_THAT(Sorted({"Zoe", "\u00c9milie", "Fanny", "Eva"}),
              ElementsAre("\u00c9milie", "Eva", "Fanny", "Zoe"));
}

TEST_F(CatalogueReader, KeepsTheOrderOfEqualNames) {
  EXPECT_THAT(Sorted({"anna", "ANNA", "Anna", "Abel"}),
              ElementsAre("Abel", "anna", "ANNA", "Anna"));
}

TEST_F(CatalogueReader, KeepsTheOrderOfManyEqualNames) {
  // So many that a sort for speed alone would mix them up.
  std::vector<std::string> names;
  for (int i = 0; i < 50; ++i) names.push_back(i % 3 == 0 ? "ANNA" : i % 3 == 1 ? "anna" : "Anna");
  EXPECT_EQ(Sorted(names), names);
}

TEST_F(CatalogueReader, SortsByTheDisplayNameWithItsLanguage) {
  EXPECT_THAT(Names(Product{.name = "Anna", .language = "Swedish"}.Xml() +
                    Product{.name = "Zoe", .language = "Danish"}.Xml()),
              ElementsAre("Danish Zoe", "Swedish Anna"));
}

TEST_F(CatalogueReader, SortsByTheNameThatIsShown) {
  EXPECT_THAT(Sorted({"Bert", "Vocalizer Anna"}), ElementsAre("Anna", "Bert"));
}

}  // namespace
