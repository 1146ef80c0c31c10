// See installed_products.h.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/system/installed_products.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/text.h"
#include "platform/linux/system/registry_text.h"

namespace platform {
namespace {

constexpr std::string_view kMachineProducts = "SOFTWARE\\CLASSES\\INSTALLER\\PRODUCTS\\";
constexpr std::string_view kUserProducts = "SOFTWARE\\MICROSOFT\\INSTALLER\\PRODUCTS\\";
constexpr std::string_view kUserData =
    "SOFTWARE\\MICROSOFT\\WINDOWS\\CURRENTVERSION\\INSTALLER\\USERDATA\\";
constexpr std::string_view kProducts = "PRODUCTS";
constexpr std::string_view kInstallProperties = "INSTALLPROPERTIES";

// The account that stands for the machine, and what the identifiers of people begin with.
constexpr std::string_view kMachine = "S-1-5-18";
constexpr std::string_view kPerson = "S-1-5-21-";

// Property names in upper case, and their texts, as they stand in the file: the last of a name
// counts.
using Properties = std::vector<std::pair<std::string, std::string>>;

struct Product {
  bool advertisedForMachine = false;
  bool advertisedForUser = false;
  std::optional<Properties> ofMachine;
  std::optional<Properties> ofPerson;
};
// By packed code. Names in the registry have no case; upper case stands for all.
using Products = std::unordered_map<std::string, Product>;

// What the key is called below its parent: a packed code, or one with keys of its own behind it,
// which nobody will ask for. Absent for a key elsewhere.
std::optional<std::string> CodeBelow(std::string_view parent, std::string_view key) {
  if (!key.starts_with(parent)) return std::nullopt;
  return std::string(key.substr(parent.size()));
}

// user.reg: the user's advertised products.
class UserRegistry : public RegistryVisitor {
 public:
  explicit UserRegistry(Products& products) : mProducts(products) {}

  bool OnKey(const std::string& path) override {
    const auto code = CodeBelow(kUserProducts, core::UpperCase(path));
    if (code) mProducts[*code].advertisedForUser = true;
    return false;
  }
  void OnText(const std::string&, const std::string&) override {}

 private:
  Products& mProducts;
};

// system.reg: the machine's advertised products, and everybody's install properties.
class MachineRegistry : public RegistryVisitor {
 public:
  explicit MachineRegistry(Products& products) : mProducts(products) {}

  bool OnKey(const std::string& path) override {
    const std::string key = core::UpperCase(path);
    const auto code = CodeBelow(kMachineProducts, key);
    if (code) mProducts[*code].advertisedForMachine = true;
    mOpen = PropertiesAt(key);
    return mOpen != nullptr;
  }
  void OnText(const std::string& name, const std::string& text) override {
    mOpen->emplace_back(core::UpperCase(name), text);
  }

 private:
  // Where the values of <SID>\Products\P\InstallProperties below the user data go, if it is that.
  Properties* PropertiesAt(const std::string& key) {
    if (!key.starts_with(kUserData)) return nullptr;
    const std::vector<std::string> levels = core::Split(key.substr(kUserData.size()), "\\");
    if (levels.size() != 4 || levels.at(1) != kProducts || levels.at(3) != kInstallProperties) {
      return nullptr;
    }
    const bool isMachine = levels.at(0) == kMachine;
    // A prefix is one person's: whatever identifier it was made with is the user's.
    if (!isMachine && !levels.at(0).starts_with(kPerson)) return nullptr;
    Product& product = mProducts[levels.at(2)];
    auto& properties = isMachine ? product.ofMachine : product.ofPerson;
    if (!properties) properties.emplace();
    return &*properties;
  }

  Products& mProducts;
  Properties* mOpen = nullptr;
};

// Two properties have another name in the registry than in the question.
std::string StoredName(const std::string& property) {
  if (property == "VersionString") return "DISPLAYVERSION";
  if (property == "InstalledProductName") return "DISPLAYNAME";
  return core::UpperCase(property);
}

}  // namespace

std::optional<std::string> PackedCode(const std::string& productCode) {
  constexpr std::string_view kForm = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
  constexpr std::array<std::size_t, 32> kPlaces = {8,  7,  6,  5,  4,  3,  2,  1,  13, 12, 11,
                                                   10, 18, 17, 16, 15, 21, 20, 23, 22, 26, 25,
                                                   28, 27, 30, 29, 32, 31, 34, 33, 36, 35};
  if (productCode.size() != kForm.size()) return std::nullopt;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const char character = productCode[i];
    const bool fits = kForm[i] == 'x' ? g_ascii_isxdigit(character) : character == kForm[i];
    if (!fits) return std::nullopt;
  }
  std::string packed(kPlaces.size(), '\0');
  for (std::size_t i = 0; i < kPlaces.size(); ++i) {
    packed[i] = g_ascii_toupper(productCode[kPlaces[i]]);
  }
  return packed;
}

struct InstalledProducts::Impl {
  const std::optional<Properties>& Find(const std::string& packedCode) const {
    static const std::optional<Properties> kNone;
    const auto found = products.find(packedCode);
    if (found == products.end()) return kNone;
    const Product& product = found->second;
    if (product.advertisedForUser) return product.ofPerson;
    return product.advertisedForMachine ? product.ofMachine : kNone;
  }

  Products products;
};

InstalledProducts::InstalledProducts() : mImpl(std::make_unique<Impl>()) {}

InstalledProducts::~InstalledProducts() = default;

void InstalledProducts::ReadSystemFile(std::string_view text) {
  MachineRegistry machine(mImpl->products);
  ReadRegistry(text, machine);
}

void InstalledProducts::ReadUserFile(std::string_view text) {
  UserRegistry user(mImpl->products);
  ReadRegistry(text, user);
}

std::optional<std::string> InstalledProducts::Property(const std::string& productCode,
                                                       const std::string& property) const {
  const std::optional<std::string> packedCode = PackedCode(productCode);
  if (!packedCode) return std::nullopt;
  const std::optional<Properties>& properties = mImpl->Find(*packedCode);
  if (!properties) return std::nullopt;
  const auto found =
      std::find_if(properties->rbegin(), properties->rend(),
                   [name = StoredName(property)](const auto& p) { return p.first == name; });
  return found == properties->rend() ? std::string() : found->second;
}

}  // namespace platform
