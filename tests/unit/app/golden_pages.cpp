// Whole pages, byte for byte, as they reach the browser. What each row must be is said in words by
// the tests of the page builder; these show that nothing else has changed.
//
// SPDX-License-Identifier: MIT
#include "tests/unit/app/golden_file.h"
#include "tests/unit/app/window_test.h"

namespace {

class GoldenPages : public WindowTest {
 protected:
  static void ExpectPage(const std::string& golden, const std::string& catalogue) {
    Start();
    CatalogueArrives(catalogue);
    ExpectGolden("pages/" + golden, World().ReadFile(PagePath()));
  }
};

TEST_F(GoldenPages, OffersDefaultAndQueuedVoices) {
  SetDefaultVoices("Vendor Daniel_Full_22kHz", "VW Julie - Velor");
  WriteQueue("<queue><item>4</item><item>3</item></queue>");
  ExpectPage("offered.htm", Catalogue(Product("1", "RealSpeak Anna Voice") +
                                      Product("2", "Vocalizer Expressive Daniel Voice") +
                                      Product("3", "Julie", "1500000") + Product("4", "Berta") +
                                      Product("5", "Demo Clara") + Product("6", "Tiny", "400000") +
                                      Product("7", "Erik")));
}

TEST_F(GoldenPages, ListsInstalledVoices) {
  Install("1");
  Install("3");
  ExpectPage("installed.htm", Catalogue(Product("1", "Anna") + Product("2", "Berta") +
                                        Product("3", "Clara") + Product("4", "Daniel")));
}

TEST_F(GoldenPages, OffersNothing) { ExpectPage("nothing.htm", Catalogue("")); }

TEST_F(GoldenPages, WritesTextsOfEveryScript) {
  Speak("de");
  ExpectPage("german.htm", Catalogue(Product("1", "Z\u00f6e \u0639\u0631\u0628\u064a \U0001F600") +
                                     Product("2", "Daniel")));
}

/// Names, languages and ids are written as they come; what a page may not do is the browser's to
/// keep, and what is queued the queue's.
TEST_F(GoldenPages, ChangesNothingInTextsThatAreMoreThanTexts) {
  WriteQueue("<queue><item>' or '1'='1</item><item>&lt;b&gt;</item></queue>");
  Install("3");
  ExpectPage("hostile.htm",
             Catalogue(Product("' or '1'='1", "Anna &lt;script&gt;alert('1')&lt;/script&gt;") +
                       Product("2'&gt;&lt;input id='check4", "Berta\n \u202Eatreb\t&amp;lt;") +
                       Product("3", "Clara &lt;/table&gt;&lt;!--") +
                       Product("4", "Daniel &lt;input type='checkbox' id='check4' checked&gt;") +
                       Product("&lt;b&gt;", "Eva &lt;img src=https://velor.example/x&gt;")));
}

}  // namespace
