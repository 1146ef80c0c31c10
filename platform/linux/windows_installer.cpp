// What the prefix's registry files say of installed products. The files lag behind the running
// registry by seconds, and are read once: at the start of the program, as the installer's other
// readers do.
//
// A product is known when two keys exist, P being its packed code and D the key
// Software\Microsoft\Windows\CurrentVersion\Installer\UserData:
//   per machine  Software\Classes\Installer\Products\P in system.reg, and
//                D\S-1-5-18\Products\P\InstallProperties in system.reg
//   per user     Software\Microsoft\Installer\Products\P in user.reg, and
//                D\(the user's SID)\Products\P\InstallProperties in system.reg
//
// SPDX-License-Identifier: MIT
#include "platform/windows_installer.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/text.h"
#include "platform/linux/file_access.h"
#include "platform/linux/registry_text.h"
#include "platform/linux/wine_prefix.h"

namespace platform {
namespace {

// Prefixes in use for years have some ten MB.
constexpr std::size_t kRegistryFileLimit = std::size_t{256} << 20;

constexpr std::string_view kMachineProducts = "SOFTWARE\\CLASSES\\INSTALLER\\PRODUCTS\\";
constexpr std::string_view kUserProducts = "SOFTWARE\\MICROSOFT\\INSTALLER\\PRODUCTS\\";
constexpr std::string_view kUserData =
    "SOFTWARE\\MICROSOFT\\WINDOWS\\CURRENTVERSION\\INSTALLER\\USERDATA\\";
constexpr std::string_view kProducts = "PRODUCTS";
constexpr std::string_view kInstallProperties = "INSTALLPROPERTIES";

// The account that stands for the machine, and what the identifiers of people begin with.
constexpr std::string_view kMachine = "S-1-5-18";
constexpr std::string_view kPerson = "S-1-5-21-";

// Property names in upper case, and their texts: a few, asked for one.
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

// The registry's spelling of a product code: {12345678-9ABC-DEF0-1122-334455667788} is
// 87654321CBA90FED1122334455667788. Three groups backwards, then eight pairs of digits each
// backwards. Absent for what is no product code.
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

// Two properties have another name in the registry than in the question.
std::string StoredName(const std::string& property) {
  if (property == "VersionString") return "DISPLAYVERSION";
  if (property == "InstalledProductName") return "DISPLAYNAME";
  return core::UpperCase(property);
}

std::string PrefixOrThrow() {
  const std::optional<std::string> prefix = WinePrefix();
  if (!prefix) throw std::runtime_error("there is no Wine prefix, so no Windows Installer");
  return *prefix;
}

}  // namespace

struct WindowsInstaller::Impl {
  explicit Impl(const std::string& prefix) {
    MachineRegistry machine(products);
    ReadRegistry(ReadRegularFile(prefix + "/system.reg", kRegistryFileLimit), machine);
    // A prefix in which nobody has set anything has no file for it.
    const std::string userFile = prefix + "/user.reg";
    if (!IsRegularFile(userFile)) return;
    UserRegistry user(products);
    ReadRegistry(ReadRegularFile(userFile, kRegistryFileLimit), user);
  }

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

WindowsInstaller::WindowsInstaller() : mImpl(std::make_unique<Impl>(PrefixOrThrow())) {}

WindowsInstaller::~WindowsInstaller() = default;

std::optional<std::string> WindowsInstaller::ProductInfo(const std::string& productCode,
                                                         const std::string& property) const {
  const std::optional<std::string> packedCode = PackedCode(productCode);
  if (!packedCode) return std::nullopt;
  const std::optional<Properties>& properties = mImpl->Find(*packedCode);
  if (!properties) return std::nullopt;
  const std::string name = StoredName(property);
  const auto found = std::ranges::find(*properties, name, &Properties::value_type::first);
  return found == properties->end() ? std::string() : found->second;
}

}  // namespace platform
