// Fonts by face and character set.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/window/font_handle.h"

#include <algorithm>
#include <stdexcept>

#include "platform/win32/wide_text.h"
#include "platform/win32/window/dpi.h"

namespace platform {
namespace {

int CALLBACK Found(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM found) {
  *reinterpret_cast<bool*>(found) = true;
  return 0;  // one is enough
}

bool IsInstalled(LOGFONTW font) {
  font.lfPitchAndFamily = 0;  // as the function requires
  bool found = false;
  const HDC screen = GetDC(nullptr);
  EnumFontFamiliesExW(screen, &font, Found, reinterpret_cast<LPARAM>(&found), 0);
  ReleaseDC(nullptr, screen);
  return found;
}

LOGFONTW Described(const Font& font, int dpi) {
  const LOGFONTW system = SystemFont(dpi);
  const std::wstring face = WideText(font.name);
  if (face.empty() || face.size() >= LF_FACESIZE) return system;
  LOGFONTW wanted = system;
  std::fill(std::begin(wanted.lfFaceName), std::end(wanted.lfFaceName), L'\0');
  std::copy(face.begin(), face.end(), wanted.lfFaceName);
  wanted.lfCharSet = static_cast<BYTE>(font.charset);
  if (IsInstalled(wanted)) return wanted;
  // Asked for a character set that the face lacks, Windows would take any other face that has it.
  wanted.lfCharSet = DEFAULT_CHARSET;
  return IsInstalled(wanted) ? wanted : system;
}

}  // namespace

FontHandle MakeFont(const std::optional<Font>& font, int dpi, int percents) {
  LOGFONTW description = font ? Described(*font, dpi) : SystemFont(dpi);
  description.lfHeight = MulDiv(description.lfHeight, percents, 100);
  FontHandle handle(CreateFontIndirectW(&description));
  if (!handle) throw std::runtime_error("the font cannot be made");
  return handle;
}

}  // namespace platform
