// Tool tips by the common controls.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/window/tool_tips.h"

#include <commctrl.h>

#include "platform/win32/wide_text.h"

namespace platform {
namespace {

TOOLINFOW Description(HWND control) {
  TOOLINFOW tool = {};
  tool.cbSize = sizeof tool;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = GetParent(control);
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  return tool;
}

void Tell(HWND toolTips, UINT message, TOOLINFOW& tool) {
  SendMessageW(toolTips, message, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace

HWND MakeToolTips(HWND form) {
  const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
  InitCommonControlsEx(&classes);
  // No prefix: an ampersand in a tool tip is an ampersand.
  return CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                         WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, CW_USEDEFAULT, CW_USEDEFAULT,
                         CW_USEDEFAULT, CW_USEDEFAULT, form, nullptr, GetModuleHandleW(nullptr),
                         nullptr);
}

void AddToolTip(HWND toolTips, HWND control) {
  if (!toolTips) return;
  TOOLINFOW tool = Description(control);
  wchar_t nothing[] = L"";
  tool.lpszText = nothing;
  Tell(toolTips, TTM_ADDTOOLW, tool);
}

void ChangeToolTip(HWND toolTips, HWND control, const std::string& text) {
  std::wstring wide = WideText(text);
  TOOLINFOW tool = Description(control);
  tool.lpszText = wide.data();
  Tell(toolTips, TTM_UPDATETIPTEXTW, tool);
}

}  // namespace platform
