// Annotations for assistive technology. All of them are extras: where the system cannot take them,
// the window is described as before.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/window/accessible.h"

#include <oleacc.h>

#include "core/attempt.h"
#include "platform/win32/com.h"
#include "platform/win32/wide_text.h"

namespace platform {
namespace {

// Of UI Automation; known by name only since Windows 8.
constexpr GUID kLiveSetting = {
    0xc12bcd8e, 0x2a8e, 0x4950, {0x8a, 0xe7, 0x36, 0x25, 0x11, 0x1d, 0x58, 0xeb}};
constexpr GUID kRole = {
    0xcb905ff2, 0x7bd1, 0x4c05, {0xb3, 0xc8, 0xe6, 0xc2, 0x41, 0x36, 0x4d, 0x70}};
constexpr GUID kName = {
    0x608d3df8, 0x8128, 0x4aa7, {0xa4, 0x28, 0xf5, 0x5e, 0x49, 0x26, 0x72, 0x91}};
constexpr CLSID kAnnotations = {
    0xb5f8350b, 0x0548, 0x48b1, {0xa6, 0xee, 0x88, 0xbd, 0x00, 0xb4, 0xa5, 0xe7}};
constexpr IID kIAccPropServices = {
    0x6e26e776, 0x04f0, 0x495d, {0x80, 0xe4, 0x33, 0x30, 0x35, 0x2e, 0x31, 0x69}};
constexpr long kPolite = 1;
constexpr DWORD kLiveRegionChanged = 0x8019;

template <class Value>
void Annotate(HWND window, const GUID& property, const Value& value) {
  core::Attempt([&] {
    const auto services = CreateObject<IAccPropServices>(kAnnotations, kIAccPropServices);
    Check(services->SetHwndProp(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, property,
                                Variant(value)));
  });
}

}  // namespace

void DescribeAsPicture(HWND window) { Annotate(window, kRole, ROLE_SYSTEM_GRAPHIC); }

void DescribeAsStatus(HWND window) { Annotate(window, kLiveSetting, kPolite); }

void SetAccessibleName(HWND window, const std::string& text) {
  Annotate(window, kName, std::wstring_view(WideText(text)));
  NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, window, OBJID_CLIENT, CHILDID_SELF);
}

void AnnounceStatus(HWND window, const std::string& text) {
  SetAccessibleName(window, text);
  NotifyWinEvent(kLiveRegionChanged, window, OBJID_CLIENT, CHILDID_SELF);
}

}  // namespace platform
