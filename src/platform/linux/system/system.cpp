// Small questions that Linux answers.
//
// SPDX-License-Identifier: MIT
#include "platform/system/system.h"

#include <glib.h>
#include <langinfo.h>
#include <locale.h>

#include <memory>
#include <type_traits>

#include "platform/linux/g_ref.h"

namespace platform {
namespace {

struct FreeLocale {
  void operator()(locale_t locale) const { freelocale(locale); }
};
using Locale = std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale>;

}  // namespace

// The version that the fonts of newer Windows are meant for: every Linux has fonts like them.
int OperatingSystemMajorVersion() { return 10; }

std::string CountryName() {
  // The environment's locale, whatever the process itself has set.
  const Locale locale(newlocale(LC_ADDRESS_MASK, "", locale_t{}));
  if (!locale) return "";
  const char* name = nl_langinfo_l(_NL_ADDRESS_COUNTRY_NAME, locale.get());
  const char* codeset = nl_langinfo_l(_NL_ADDRESS_CODESET, locale.get());
  GErrorCheck error;
  const GMemory<char> converted(
      g_convert(name, -1, "UTF-8", codeset, nullptr, nullptr, error.Out()));
  error.Check();
  return converted.get();
}

void InitCommonControls(std::uint32_t, std::uint32_t) {}

}  // namespace platform
