// The prefix's registry files, and what they say of installed products. The input is system.reg,
// and user.reg behind it from the second header on.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/linux/system/installed_products.h"
#include "platform/linux/system/registry_text.h"
#include "tests/fuzz/target.h"

namespace {

using fuzz::Require;

constexpr std::string_view kHeader = "WINE REGISTRY Version 2";

/// Everything that a file tells, in its order.
class Contents : public platform::RegistryVisitor {
 public:
  using Texts = std::vector<std::pair<std::string, std::string>>;

  bool OnKey(const std::string& path) override {
    keys.emplace_back(path, Texts());
    return true;
  }
  void OnText(const std::string& name, const std::string& text) override {
    keys.back().second.emplace_back(name, text);
  }

  std::vector<std::pair<std::string, Texts>> keys;
};

/// Absent for what is no registry file.
std::optional<Contents> Read(std::string_view text) {
  Contents contents;
  const bool read = core::Attempt([&] { platform::ReadRegistry(text, contents); });
  const std::string_view line = text.substr(0, text.find('\n'));
  Require(read == (line == kHeader || line == std::string(kHeader) + '\r'));
  return read ? std::optional(contents) : std::nullopt;
}

/// As Wine writes a text: what would end it or its line, and what is no letter, by number.
std::string Escaped(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string escaped;
  for (const char character : text) {
    const auto number = static_cast<unsigned char>(character);
    if (std::string_view("\\\"[]").find(character) != std::string_view::npos) {
      escaped += '\\';
      escaped += character;
    } else if (number < 0x20) {
      escaped += "\\x00";
      escaped += kDigits.at(number / 16);
      escaped += kDigits.at(number % 16);
    } else {
      escaped += character;
    }
  }
  return escaped;
}

/// What is told, written down again, is told again.
void CheckReading(const Contents& contents) {
  std::string text(kHeader);
  for (const auto& [path, texts] : contents.keys) {
    text += "\n\n[" + Escaped(path) + "] 1700000000\n#time=1da1b2c3d4e5f60\n";
    for (const auto& [name, value] : texts) {
      text += '"' + Escaped(name) + "\"=\"" + Escaped(value) + "\"\n";
    }
  }
  const std::optional<Contents> again = Read(text);
  Require(again && again->keys == contents.keys);
}

/// Where the digits of a product code stand in its packed form, which is as many characters long as
/// the code without braces and hyphens.
constexpr std::array<std::size_t, 32> kPlaces = {7,  6,  5,  4,  3,  2,  1,  0,  11, 10, 9,
                                                 8,  15, 14, 13, 12, 17, 16, 19, 18, 21, 20,
                                                 23, 22, 25, 24, 27, 26, 29, 28, 31, 30};

std::string ProductCode(std::string_view packed) {
  std::string code = "{";
  for (std::size_t i = 0; i < kPlaces.size(); ++i) {
    if (i == 8 || i == 12 || i == 16 || i == 20) code += '-';
    code += packed.at(kPlaces.at(i));
  }
  return code + '}';
}

bool IsPackedCode(std::string_view text) {
  return text.size() == kPlaces.size() &&
         text.find_first_not_of("0123456789ABCDEF") == std::string_view::npos;
}

/// Keys in upper case, with their texts by name in upper case: the registry knows no letter case.
using Keys = std::map<std::string, std::map<std::string, std::string>>;

Keys KeysOf(const Contents& contents) {
  Keys keys;
  for (const auto& [path, texts] : contents.keys) {
    auto& values = keys[core::UpperCase(path)];
    for (const auto& [name, text] : texts) values.insert_or_assign(core::UpperCase(name), text);
  }
  return keys;
}

/// Every text between two backslashes that could be a packed code, in whatever key it stands.
std::set<std::string> PackedCodesIn(const Keys& keys) {
  std::set<std::string> codes;
  for (const auto& [key, values] : keys) {
    std::string_view rest = key;
    while (!rest.empty()) {
      const std::string_view level = fuzz::TakeUpTo(rest, "\\");
      if (IsPackedCode(level)) codes.emplace(level);
    }
  }
  return codes;
}

constexpr const char* kMachineProducts = R"(SOFTWARE\CLASSES\INSTALLER\PRODUCTS\)";
constexpr const char* kUserProducts = R"(SOFTWARE\MICROSOFT\INSTALLER\PRODUCTS\)";
constexpr const char* kUserData =
    R"(SOFTWARE\MICROSOFT\WINDOWS\CURRENTVERSION\INSTALLER\USERDATA\)";

/// What a product's version should be: one of its install properties' values, of which there may be
/// several with different people; none where the product is not known.
std::set<std::string> ExpectedVersions(const Keys& system, const Keys& user,
                                       const std::string& packed) {
  const std::string tail = R"(\PRODUCTS\)" + packed + R"(\INSTALLPROPERTIES)";
  const bool ofUser = user.contains(kUserProducts + packed);
  if (!ofUser && !system.contains(kMachineProducts + packed)) return {};
  std::set<std::string> versions;
  for (const auto& [key, values] : system) {
    if (!key.starts_with(kUserData) || !key.ends_with(tail)) continue;
    const std::string begin = std::string(kUserData) + (ofUser ? "S-1-5-21-" : "S-1-5-18");
    const auto length = key.size() - tail.size();
    const bool isOneLevel = length >= begin.size() && key.starts_with(begin) &&
                            key.substr(0, length).find('\\', begin.size()) == std::string::npos;
    if (!isOneLevel || (!ofUser && length != begin.size())) continue;
    const auto version = values.find("DISPLAYVERSION");
    versions.insert(version == values.end() ? "" : version->second);
  }
  return versions;
}

/// A product is known exactly where both of its keys are, and its version stands there.
void CheckProduct(const platform::InstalledProducts& products, const Keys& system, const Keys& user,
                  const std::string& packed) {
  const std::string code = ProductCode(packed);
  Require(platform::PackedCode(code) == packed);
  const auto version = products.Property(code, "VersionString");
  const std::set<std::string> expected = ExpectedVersions(system, user, packed);
  Require(version.has_value() == !expected.empty());
  // Where several people have the product, the values of one cover those that another lacks.
  if (version) Require(expected.contains(*version));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = fuzz::Text(data, size);
  const std::size_t second = input.find("\nWINE REGISTRY", 1);
  const std::string_view systemText = input.substr(0, second);
  const std::string_view userText =
      second == std::string_view::npos ? std::string_view() : input.substr(second + 1);

  platform::InstalledProducts products;
  const bool read = core::Attempt([&] {
    products.ReadSystemFile(systemText);
    if (!userText.empty()) products.ReadUserFile(userText);
  });
  const std::optional<Contents> system = Read(systemText);
  const std::optional<Contents> user = userText.empty() ? Contents() : Read(userText);
  Require(read == (system && user));
  if (!system || !user) return 0;

  CheckReading(*system);
  CheckReading(*user);
  const Keys systemKeys = KeysOf(*system);
  const Keys userKeys = KeysOf(*user);
  std::set<std::string> codes = PackedCodesIn(systemKeys);
  codes.merge(PackedCodesIn(userKeys));
  for (const std::string& packed : codes) CheckProduct(products, systemKeys, userKeys, packed);
  return 0;
}
