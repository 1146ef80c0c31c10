// The order of names, by ICU's root collation: the rules of no language in particular.
//
// The names of ICU's library and functions contain its version, which changes with each release of
// a distribution. The program would start on one release only if it were linked to ICU. WebKitGTK
// depends on ICU, so the library is loaded already, and its functions are looked up at run time.
//
// SPDX-License-Identifier: MIT
#include "platform/system/text_order.h"

#include <dlfcn.h>
#include <glib.h>
#include <link.h>
#include <unicode/ucol.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/linux/g_ref.h"

namespace platform {
namespace {

constexpr std::string_view kIcu = "/libicui18n.so.";

// A callback of dl_iterate_phdr. `found` is a const char*&.
int FindIcu(dl_phdr_info* library, std::size_t /*size*/, void* found) {
  if (std::string_view(library->dlpi_name).find(kIcu) == std::string_view::npos) return 0;
  *static_cast<const char**>(found) = library->dlpi_name;
  return 1;
}

// ICU's functions and a collator, which exist until the process ends.
class Icu {
 public:
  Icu() {
    const char* found = nullptr;
    dl_iterate_phdr(FindIcu, static_cast<void*>(&found));
    if (found == nullptr) return;
    mPath = found;
    const auto open = Function<decltype(ucol_open)>("ucol_open");
    const auto setStrength = Function<decltype(ucol_setStrength)>("ucol_setStrength");
    mGetSortKey = Function<decltype(ucol_getSortKey)>("ucol_getSortKey");
    if (!open || !setStrength || !mGetSortKey) return;
    UErrorCode code = U_ZERO_ERROR;
    mCollator = open("", &code);
    // Secondary strength distinguishes letters and accents, not case.
    if (mCollator != nullptr) setStrength(mCollator, UCOL_SECONDARY);
  }

  bool IsUsable() const { return mCollator != nullptr; }

  /// Writes at most `size` bytes of the key, and returns the size of all of it.
  std::size_t GetSortKey(const gunichar2* text, glong length, void* key, std::size_t size) const {
    return static_cast<std::size_t>(mGetSortKey(
        mCollator, reinterpret_cast<const UChar*>(text), static_cast<std::int32_t>(length),
        static_cast<std::uint8_t*>(key), static_cast<std::int32_t>(size)));
  }

 private:
  /// Null if the loaded ICU has no such function. Some builds of ICU omit the version.
  template <class Signature>
  Signature* Function(const std::string& name) const {
    const std::string version = mPath.substr(mPath.find(kIcu) + kIcu.size());
    void* const library = dlopen(mPath.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    void* symbol = dlsym(library, (name + '_' + version).c_str());
    if (symbol == nullptr) symbol = dlsym(library, name.c_str());
    return reinterpret_cast<Signature*>(symbol);
  }

  std::string mPath;
  decltype(ucol_getSortKey)* mGetSortKey = nullptr;
  UCollator* mCollator = nullptr;
};

std::string IcuKey(const Icu& icu, const char* text) {
  glong length = 0;
  const GMemory<gunichar2> wide(g_utf8_to_utf16(text, -1, nullptr, &length, nullptr));
  std::array<char, 256> buffer;  // enough for a name
  const std::size_t size = icu.GetSortKey(wide.get(), length, buffer.data(), buffer.size());
  if (size <= buffer.size()) return {buffer.data(), size};
  std::string key(size, '\0');
  icu.GetSortKey(wide.get(), length, key.data(), key.size());
  return key;
}

// The letters without accents, then with them, both in the order of code points.
std::string CodePointKey(const char* text) {
  const GMemory<char> folded(g_utf8_casefold(text, -1));
  const GMemory<char> accented(g_utf8_normalize(folded.get(), -1, G_NORMALIZE_NFD));
  std::string key;
  for (const char *at = accented.get(), *next = at; *at != '\0'; at = next) {
    next = g_utf8_next_char(at);
    if (g_unichar_combining_class(g_utf8_get_char(at)) == 0) key.append(at, next);
  }
  return key.append(1, '\0').append(accented.get());
}

}  // namespace

std::string SortKey(const std::string& text) {
  static const Icu icu;
  const GMemory<char> valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
  return icu.IsUsable() ? IcuKey(icu, valid.get()) : CodePointKey(valid.get());
}

}  // namespace platform
