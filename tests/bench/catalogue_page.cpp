// From the catalogue's bytes to the page file's, on the real back end, by the steps of
// frmSelect::BuildVoicesPage.
//
// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <malloc.h>

#include <optional>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "app/modDisplayHTMLInWebbrowser.h"
#include "catalogue/catalogue_reader.h"
#include "catalogue/page_builder.h"
#include "catalogue/voice_names.h"
#include "i18n/modI18N2.h"
#include "platform/documents/xml_document.h"
#include "platform/window/web_browser.h"
#include "tests/bench/measures.h"

namespace platform {

// A browser that shows nothing: the page file is the end of the measure. Linked instead of the back
// end's, which would start processes that draw the page meanwhile.
struct WebBrowser::Impl {};
WebBrowser::WebBrowser(const Control&) {}
WebBrowser::~WebBrowser() = default;
void WebBrowser::Navigate(const std::string&) {}

}  // namespace platform

namespace bench {
namespace {

using benchmark::State;

// A program makes one page, out of memory that is new to it. So is that of every round here: what
// an earlier one has freed goes back to the system.
void ForgetMemory() { malloc_trim(0); }

void CountVoices(State& state, int voices) {
  state.counters["each"] = benchmark::Counter(
      voices, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

std::string Text(const std::string& key) { return modI18N2::GetText(key); }

std::string DefaultVoice(const std::string& key, std::int16_t slot) {
  std::string name = modI18N2::GetLanguageSetting(key, slot, "");
  return CleanVoiceName(name);
}

// What there is in memory when the page file is written.
struct Making {
  platform::XmlDocument document;
  VoicesPage page;
};

void MakePage(Making& making, const platform::WindowsInstaller& installer,
              platform::WebBrowser& browser) {
  making.page = BuildPage(
      ReadCatalogue(making.document.DocumentElement(), modI18N2::GetLanguage1(), &installer), Text,
      {DefaultVoice("Speech.Voice1", 1), DefaultVoice("Speech.Voice2", 2)}, platform::XmlNode(),
      &installer);
  modDisplayHTMLInWebbrowser::DisplayHTMLInWebbrowser(making.page.body, browser);
}

void CataloguePage(State& state, const Prefix& prefix, int voices, bool half) {
  LoadLanguages();
  const auto installer = prefix.Installer(voices, half);
  const std::string bytes = Catalogue(voices);
  platform::WebBrowser browser{platform::Control(nullptr)};
  for (auto _ : state) {
    state.PauseTiming();
    std::string arrived = bytes;
    ForgetMemory();
    // What is read is given up when the page file is written, by the reference as by the window.
    std::optional<Making> making(std::in_place);
    state.ResumeTiming();
    making->document.LoadXml(std::move(arrived));
    MakePage(*making, *installer, browser);
    state.PauseTiming();
    const auto offered = static_cast<std::size_t>(half ? voices / 2 : voices);
    if (making->page.offered.size() != offered)
      throw std::logic_error("not the page that is meant");
    making.reset();
    state.ResumeTiming();
  }
  CountVoices(state, voices);
}

void Libxml2Parse(State& state, int voices) {
  const std::string bytes = Catalogue(voices);
  for (auto _ : state) {
    state.PauseTiming();
    ForgetMemory();
    state.ResumeTiming();
    // With the back end's options.
    xmlDoc* const document =
        xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    state.PauseTiming();
    if (!document) throw std::logic_error("not well-formed");
    xmlFreeDoc(document);
    state.ResumeTiming();
  }
  CountVoices(state, voices);
}

void PugixmlParseAndXPath(State& state, int voices) {
  const std::string bytes = Catalogue(voices);
  for (auto _ : state) {
    state.PauseTiming();
    auto document = std::make_unique<pugi::xml_document>();
    ForgetMemory();
    state.ResumeTiming();
    document->load_buffer(bytes.data(), bytes.size(), pugi::parse_default, pugi::encoding_utf8);
    const pugi::xpath_node_set products =
        document->document_element().select_nodes("product[producttype='Windows Voices']");
    state.PauseTiming();
    if (products.size() != static_cast<std::size_t>(voices)) throw std::logic_error("not all");
    document.reset();
    state.ResumeTiming();
  }
  CountVoices(state, voices);
}

benchmark::internal::Benchmark* Register(const std::string& name, auto measure) {
  return benchmark::RegisterBenchmark(name.c_str(), measure)->Unit(benchmark::kMicrosecond);
}

}  // namespace

void RegisterCataloguePage(const Prefix& prefix) {
  for (const int voices : {100, 1000, 5000}) {
    const std::string count = "/voices:" + std::to_string(voices);
    for (const bool half : {false, true}) {
      Register(
          "CataloguePage" + count + "/installed:" + (half ? "half" : "none"),
          [&prefix, voices, half](State& state) { CataloguePage(state, prefix, voices, half); });
    }
    Register("Libxml2Parse" + count, [voices](State& state) { Libxml2Parse(state, voices); });
    Register("PugixmlParseAndXPath" + count,
             [voices](State& state) { PugixmlParseAndXPath(state, voices); });
  }
}

}  // namespace bench
