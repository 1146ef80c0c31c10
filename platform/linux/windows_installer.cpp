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

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string_view>
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

// Property names in upper case to their texts.
using Properties = std::map<std::string, std::string>;

// The keys that say a product is advertised, from the file that holds them for machine or user.
// Names in the registry have no case; upper case stands for all.
class AdvertisedProducts : public RegistryVisitor {
 public:
  explicit AdvertisedProducts(std::string_view parent) : mParent(parent) {}

  bool OnKey(const std::string& path) override {
    const std::string key = core::UpperCase(path);
    if (key.starts_with(mParent)) mCodes.insert(key.substr(mParent.size()));
    return false;
  }
  void OnText(const std::string&, const std::string&) override {}

  bool Has(const std::string& packedCode) const { return mCodes.contains(packedCode); }

 private:
  const std::string_view mParent;
  std::set<std::string> mCodes;
};

// system.reg: the machine's advertised products, and everybody's install properties.
class MachineRegistry : public RegistryVisitor {
 public:
  bool OnKey(const std::string& path) override {
    mAdvertised.OnKey(path);
    mOpen = PropertiesAt(core::UpperCase(path));
    return mOpen != nullptr;
  }
  void OnText(const std::string& name, const std::string& text) override {
    mOpen->insert_or_assign(core::UpperCase(name), text);
  }

  const AdvertisedProducts& Advertised() const { return mAdvertised; }
  const Properties* OfMachine(const std::string& packedCode) const {
    return Find(mOfMachine, packedCode);
  }
  const Properties* OfPerson(const std::string& packedCode) const {
    return Find(mOfPersons, packedCode);
  }

 private:
  using ByCode = std::map<std::string, Properties>;

  // Where the values of <SID>\Products\P\InstallProperties below the user data go, if it is that.
  Properties* PropertiesAt(const std::string& key) {
    if (!key.starts_with(kUserData)) return nullptr;
    const std::vector<std::string> levels = core::Split(key.substr(kUserData.size()), "\\");
    if (levels.size() != 4 || levels.at(1) != kProducts || levels.at(3) != kInstallProperties) {
      return nullptr;
    }
    if (levels.at(0) == kMachine) return &mOfMachine[levels.at(2)];
    // A prefix is one person's: whatever identifier it was made with is the user's.
    if (levels.at(0).starts_with(kPerson)) return &mOfPersons[levels.at(2)];
    return nullptr;
  }

  static const Properties* Find(const ByCode& properties, const std::string& packedCode) {
    const auto found = properties.find(packedCode);
    return found == properties.end() ? nullptr : &found->second;
  }

  AdvertisedProducts mAdvertised{kMachineProducts};
  ByCode mOfMachine;
  ByCode mOfPersons;
  Properties* mOpen = nullptr;
};

bool IsProductCode(std::string_view code) {
  constexpr std::string_view kForm = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
  if (code.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const bool fits = kForm.at(i) == 'x' ? g_ascii_isxdigit(code.at(i)) : code.at(i) == kForm.at(i);
    if (!fits) return false;
  }
  return true;
}

// The registry's spelling: {12345678-9ABC-DEF0-1122-334455667788} is
// 87654321CBA90FED1122334455667788. Three groups backwards, then eight pairs of digits each
// backwards.
std::string PackedCode(const std::string& productCode) {
  if (!IsProductCode(productCode)) throw std::invalid_argument("not a product code");
  std::string digits = core::UpperCase(productCode);
  std::erase_if(digits, [](char character) { return !g_ascii_isxdigit(character); });
  std::string packed;
  std::size_t start = 0;
  for (const std::size_t length : {8, 4, 4, 2, 2, 2, 2, 2, 2, 2, 2}) {
    const std::string group = digits.substr(start, length);
    packed.append(group.rbegin(), group.rend());
    start += length;
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
    ReadRegistry(ReadRegularFile(prefix + "/system.reg", kRegistryFileLimit), machine);
    // A prefix in which nobody has set anything has no file for it.
    const std::string userFile = prefix + "/user.reg";
    if (IsRegularFile(userFile)) ReadRegistry(ReadRegularFile(userFile, kRegistryFileLimit), user);
  }

  const Properties* Find(const std::string& packedCode) const {
    if (user.Has(packedCode)) return machine.OfPerson(packedCode);
    if (machine.Advertised().Has(packedCode)) return machine.OfMachine(packedCode);
    return nullptr;
  }

  MachineRegistry machine;
  AdvertisedProducts user{kUserProducts};
};

WindowsInstaller::WindowsInstaller() : mImpl(std::make_unique<Impl>(PrefixOrThrow())) {}

WindowsInstaller::~WindowsInstaller() = default;

std::string WindowsInstaller::ProductInfo(const std::string& productCode,
                                          const std::string& property) const {
  const Properties* properties = mImpl->Find(PackedCode(productCode));
  if (!properties) throw std::runtime_error("the product is not installed: " + productCode);
  const auto found = properties->find(StoredName(property));
  return found == properties->end() ? std::string() : found->second;
}

}  // namespace platform
