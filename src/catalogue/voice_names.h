// The names of voices, reduced to what people call them. Pure text; no documents, no system.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Reduces any of the shapes that a voice's name comes in to the bare name, so that a catalogue
/// voice and a default voice can be compared: "English (UK) Daniel", "VW Julie - Velor" and
/// "Vendor Daniel_Full_22kHz" become "Daniel", "Julie" and "Daniel". Where nothing remains, or
/// nothing was given, the answer is "Daniel", which stands for no choice.
///
/// The argument is cleaned in place too, and may be left empty.
std::string CleanVoiceName(std::string& name);

/// The part of a catalogue product's name that is shown: without the words of the maker's
/// suppliers.
std::string WithoutVendorWords(std::string name);
