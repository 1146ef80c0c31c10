// The site of the WebBrowser control and what the control is denied there. Each lock stands for
// itself: scripts, controls, downloads and the network by the download flags, places to go and new
// windows by the events, dropped files by the drop target.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/window/browser_site.h"

#include <exdispid.h>
#include <mshtmdid.h>

#include "core/attempt.h"
#include "platform/win32/window/browser_control.h"
#include "platform/win32/window/drop_refusal.h"

namespace platform {
namespace {

/// Without images, sounds and videos too: none of these flags asks for them. Offline, a local file
/// is still read; nothing else is.
constexpr long kDownloadControl = DLCTL_NO_SCRIPTS | DLCTL_NO_JAVA | DLCTL_NO_DLACTIVEXCTLS |
                                  DLCTL_NO_RUNACTIVEXCTLS | DLCTL_NO_FRAMEDOWNLOAD |
                                  DLCTL_NO_BEHAVIORS | DLCTL_NO_CLIENTPULL | DLCTL_FORCEOFFLINE |
                                  DLCTL_SILENT;

/// The page has no border of its own, looks as the system's other windows do, and counts in the
/// screen's density.
constexpr DWORD kHostFlags = DOCHOSTUIFLAG_NO3DBORDER | DOCHOSTUIFLAG_NO3DOUTERBORDER |
                             DOCHOSTUIFLAG_THEME | DOCHOSTUIFLAG_DPI_AWARE |
                             DOCHOSTUIFLAG_DISABLE_HELP_MENU;

/// Of arguments that may be missing; they come last one first.
VARIANT* Argument(DISPPARAMS& parameters, UINT fromTheEnd) {
  return fromTheEnd < parameters.cArgs ? &parameters.rgvarg[fromTheEnd] : nullptr;
}

void SetCancel(VARIANT* cancel, VARIANT_BOOL value) {
  if (cancel && cancel->vt == (VT_BYREF | VT_BOOL)) *cancel->pboolVal = value;
}

std::string TextOf(VARIANT* argument) {
  if (!argument) return "";
  Variant text;
  Check(VariantCopyInd(&text, argument));
  return text.Utf8();
}

bool IsTrue(VARIANT* argument) {
  if (!argument) return false;
  Variant flag;
  Check(VariantCopyInd(&flag, argument));
  return flag.As(VT_BOOL).boolVal != VARIANT_FALSE;
}

template <class T>
HRESULT Nothing(T** object) {
  if (object) *object = nullptr;
  return E_NOTIMPL;
}

}  // namespace

void* BrowserFrame::FindMore(REFIID interfaceId) {
  if (IsEqualIID(interfaceId, __uuidof(IOleInPlaceUIWindow)) ||
      IsEqualIID(interfaceId, __uuidof(IOleWindow))) {
    return static_cast<IOleInPlaceFrame*>(this);
  }
  return nullptr;
}

HRESULT BrowserFrame::GetWindow(HWND* window) {
  if (!window) return E_POINTER;
  *window = mForm;
  return S_OK;
}

void* BrowserSite::FindMore(REFIID interfaceId) {
  if (IsEqualIID(interfaceId, __uuidof(IOleWindow))) return static_cast<IOleInPlaceSite*>(this);
  // Events come through IDispatch; the interface of their name has no other methods.
  if (IsEqualIID(interfaceId, __uuidof(DWebBrowserEvents2))) return static_cast<IDispatch*>(this);
  return nullptr;
}

HRESULT BrowserSite::GetContainer(IOleContainer** container) {
  if (!container) return E_POINTER;
  *container = nullptr;
  return E_NOINTERFACE;
}

HRESULT BrowserSite::GetWindow(HWND* window) {
  if (!window) return E_POINTER;
  *window = mOwner ? mOwner->Window() : nullptr;
  return mOwner ? S_OK : E_FAIL;
}

HRESULT BrowserSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window,
                                      LPRECT place, LPRECT clip,
                                      LPOLEINPLACEFRAMEINFO information) {
  if (!frame || !window || !place || !clip || !information) return E_POINTER;
  *frame = nullptr;
  *window = nullptr;
  if (!mOwner) return E_FAIL;
  const HWND form = GetAncestor(mOwner->Window(), GA_ROOT);
  if (!core::Attempt([&] {
        auto made = ComPtr<IOleInPlaceFrame>::Share(new BrowserFrame(form));
        *frame = made.Get();
        (*frame)->AddRef();
      })) {
    return E_OUTOFMEMORY;
  }
  GetClientRect(mOwner->Window(), place);
  *clip = *place;
  *information = {sizeof(OLEINPLACEFRAMEINFO), FALSE, form, nullptr, 0};
  return S_OK;
}

HRESULT BrowserSite::GetExtendedControl(IDispatch** control) { return Nothing(control); }

/// The control asks here when it has no further element for the Tab key.
HRESULT BrowserSite::TranslateAccelerator(MSG* message, DWORD) {
  if (!mOwner || !message || message->message != WM_KEYDOWN || message->wParam != VK_TAB) {
    return S_FALSE;
  }
  // Declined where no other control takes the focus: then the control goes round in the page.
  const bool left =
      core::AttemptOr(false, [&] { return mOwner->LeaveByTab(GetKeyState(VK_SHIFT) < 0); });
  return left ? S_OK : S_FALSE;
}

HRESULT BrowserSite::GetHostInfo(DOCHOSTUIINFO* information) {
  if (!information) return E_POINTER;
  information->dwFlags = kHostFlags;
  information->dwDoubleClick = DOCHOSTUIDBLCLK_DEFAULT;
  return S_OK;
}

HRESULT BrowserSite::GetOptionKeyPath(LPOLESTR* key, DWORD) { return Nothing(key); }

/// Instead of the control's own, which would show a dropped file.
HRESULT BrowserSite::GetDropTarget(IDropTarget*, IDropTarget** target) {
  if (!target) return E_POINTER;
  *target = nullptr;
  return core::Attempt([&] {
    auto refusal = ComPtr<IDropTarget>::Share(new DropRefusal);
    refusal->AddRef();
    *target = refusal.Get();
  })
             ? S_OK
             : E_OUTOFMEMORY;
}

HRESULT BrowserSite::GetExternal(IDispatch** external) { return Nothing(external); }

HRESULT BrowserSite::TranslateUrl(DWORD, LPWSTR, LPWSTR* address) {
  if (address) *address = nullptr;
  return S_FALSE;  // as it is
}

HRESULT BrowserSite::FilterDataObject(IDataObject*, IDataObject** object) {
  if (object) *object = nullptr;
  return S_FALSE;  // as it is
}

HRESULT BrowserSite::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT BrowserSite::Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters,
                            VARIANT* answer, EXCEPINFO*, UINT*) {
  if (member == DISPID_AMBIENT_DLCONTROL && answer) {
    answer->vt = VT_I4;
    answer->lVal = kDownloadControl;
    return S_OK;
  }
  if (!parameters) return DISP_E_MEMBERNOTFOUND;
  return core::AttemptOr(E_FAIL, [&] { return Told(member, *parameters); });
}

HRESULT BrowserSite::Told(DISPID event, DISPPARAMS& parameters) {
  switch (event) {
    case DISPID_BEFORENAVIGATE2: {
      // Cancelled first: an address that cannot be read is refused.
      VARIANT* const cancel = Argument(parameters, 0);
      SetCancel(cancel, VARIANT_TRUE);
      if (mOwner && !mOwner->IsRefused(TextOf(Argument(parameters, 5)))) {
        SetCancel(cancel, VARIANT_FALSE);
      }
      return S_OK;
    }
    case DISPID_NEWWINDOW2:
      SetCancel(Argument(parameters, 0), VARIANT_TRUE);
      return S_OK;
    case DISPID_NEWWINDOW3:
      SetCancel(Argument(parameters, 3), VARIANT_TRUE);
      return S_OK;
    case DISPID_FILEDOWNLOAD:
      // Told of pages as well, which the control shows itself.
      if (!IsTrue(Argument(parameters, 1))) SetCancel(Argument(parameters, 0), VARIANT_TRUE);
      return S_OK;
    case DISPID_DOCUMENTCOMPLETE:
      if (mOwner) mOwner->PageShown();
      return S_OK;
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

}  // namespace platform
