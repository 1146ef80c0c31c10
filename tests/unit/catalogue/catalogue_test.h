// What the tests of this module begin with: a fresh world, and short ways to write the documents
// that the module reads.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "catalogue/clsVoice.h"
#include "platform/documents/xml.h"
#include "platform/system/windows_installer.h"
#include "tests/fake_platform/fake.h"

/// A product as a catalogue of the maker has it. An absent element is said by leaving it out of the
/// text: see Without.
struct Product {
  std::string name = "Daniel";
  std::string language = "English (UK)";
  std::string id = "1";
  std::string size = "75000000";
  std::string code{};
  std::string type = "Windows Voices";

  std::string Xml() const {
    return "<product><producttype>" + type + "</producttype><name>" + name + "</name><language>" +
           language + "</language><id>" + id + "</id><size>" + size + "</size><productcode>" +
           code + "</productcode><link>https://voices.example/" + id + "</link></product>";
  }

  /// The product lacking one of its elements.
  std::string Without(const std::string& element) const {
    std::string xml = Xml();
    const auto from = xml.find("<" + element + ">");
    const std::string end = "</" + element + ">";
    xml.erase(from, xml.find(end) + end.size() - from);
    return xml;
  }
};

/// The root element of a text.
inline platform::XmlNode Root(const std::string& xml) {
  return platform::ParseXml(xml).SelectSingleNode("*");
}

struct FreshWorld {
  FreshWorld() { fake::Reset(); }
};

/// FreshWorld comes first, since the installer already asks the world.
class CatalogueTest : private FreshWorld, public testing::Test {
 protected:
  const platform::WindowsInstaller mInstaller;

  static void Install(const std::string& code) {
    fake::TheWorld().installedProducts->insert({code, "1.0"});
  }

  /// A voice of 75 MB. One that is installed has "{`id`}" for its product code.
  static clsVoice Voice(const std::string& name, const std::string& id, std::int16_t size = 75) {
    clsVoice voice;
    voice.Name = name;
    voice.ID = id;
    voice.Size = size;
    return voice;
  }

  static clsVoice InstalledVoice(const std::string& name, const std::string& id,
                                 std::int16_t size = 75) {
    clsVoice voice = Voice(name, id, size);
    voice.SetProductCode(id);
    Install(voice.ProductCode());
    return voice;
  }
};
