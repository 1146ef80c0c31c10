// Measures of the program's own work, without window, network and disk. A release build with
// VELOR_BUILD_BENCH; then, for a table or for other programs,
//   build/linux-release/velor_bench
//   build/linux-release/velor_bench --benchmark_format=json --benchmark_repetitions=5
//   build/linux-release/velor_bench --benchmark_filter='voices:1000/'
//
// CataloguePage/voices:N/installed:none|half  catalogue bytes to page file (catalogue_page.cpp)
// Libxml2Parse/voices:N                       the reference for it: the library's parse, no more
// PugixmlParseAndXPath/voices:N               the fastest peer: parse, and the question for voices
// GetText, HashLookup                         a text by its key, for every key and language; and
// its
//                                             reference (texts.cpp)
// StartupTexts                                all look-ups between start and page
// LoadLanguages                               reading the language files before them
//
// What is freed after the work is freed outside the measure, in the references too. The counter
// "each" is the time of a voice or a look-up.
//
// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include "tests/bench/measures.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  const bench::Prefix prefix;
  bench::RegisterCataloguePage(prefix);
  bench::RegisterTexts();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
