// The interfaces of the WebBrowser control that the program uses, without a page: it keeps its site
// and the listener of its events, and everything else does nothing or is refused.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <exdispid.h>
#include <ocidl.h>
#include <olectl.h>
#include <oleidl.h>

#include "platform/win32/com_object.h"
#include "tests/e2e/win32/control/refusing_browser.h"

namespace page {

class BasicControl : public platform::ComObject<RefusingBrowser, IOleObject, IOleInPlaceObject,
                                                IOleInPlaceActiveObject, IPersistStreamInit,
                                                IConnectionPointContainer, IConnectionPoint> {
 public:
  // IWebBrowser2
  HRESULT STDMETHODCALLTYPE put_Silent(VARIANT_BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE put_RegisterAsDropTarget(VARIANT_BOOL) override { return S_OK; }

  // IOleObject
  HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) override {
    mSite = platform::ComPtr<IOleClientSite>::Share(site);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** site) override {
    *site = mSite ? mSite.Get() : nullptr;
    if (*site) (*site)->AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Close(DWORD) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DoVerb(LONG, LPMSG, IOleClientSite*, LONG, HWND, LPCRECT) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Update() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE IsUpToDate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetUserType(DWORD, LPOLESTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetExtent(DWORD, SIZEL*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD, SIZEL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Advise(IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD, DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

  // IOleWindow, IOleInPlaceObject, IOleInPlaceActiveObject
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override {
    *window = nullptr;
    return E_FAIL;
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InPlaceDeactivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE UIDeactivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetObjectRects(LPCRECT, LPCRECT) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ReactivateAndUndo() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }

  // IPersistStreamInit
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE IsDirty() override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE Load(LPSTREAM) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Save(LPSTREAM, BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InitNew() override { return S_OK; }

  // IConnectionPointContainer, IConnectionPoint: one listener for the events.
  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID events, IConnectionPoint** point) override {
    *point = nullptr;
    if (!IsEqualIID(events, __uuidof(DWebBrowserEvents2))) return CONNECT_E_NOCONNECTION;
    *point = this;
    static_cast<IConnectionPoint*>(this)->AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* listener, DWORD* cookie) override {
    *cookie = 1;
    return listener->QueryInterface(IID_IDispatch, mListener.OutVoid());
  }
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD) override {
    mListener = {};
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

 protected:
  /// Notifies the listener; the arguments are in reverse order.
  void Fire(DISPID event, VARIANT* arguments, UINT count) {
    if (!mListener) return;
    const auto listener = mListener;
    DISPPARAMS parameters = {arguments, nullptr, count, 0};
    listener->Invoke(event, IID{}, LOCALE_INVARIANT, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                     nullptr);
  }

  /// Fires BeforeNavigate2; true when the listener cancels.
  bool IsCancelled(VARIANT address) {
    VARIANT_BOOL cancelled = VARIANT_FALSE;
    VARIANT empty[4];
    for (VARIANT& each : empty) VariantInit(&each);
    VARIANT arguments[7];
    arguments[0].vt = VT_BYREF | VT_BOOL;
    arguments[0].pboolVal = &cancelled;
    for (UINT at = 1; at < 5; ++at) ReferTo(arguments[at], empty[at - 1]);
    ReferTo(arguments[5], address);
    arguments[6].vt = VT_DISPATCH;
    arguments[6].pdispVal = this;
    Fire(DISPID_BEFORENAVIGATE2, arguments, 7);
    return cancelled != VARIANT_FALSE;
  }

  platform::ComPtr<IOleClientSite> mSite;
  platform::ComPtr<IDispatch> mListener;

 private:
  static void ReferTo(VARIANT& argument, VARIANT& value) {
    argument.vt = VT_BYREF | VT_VARIANT;
    argument.pvarVal = &value;
  }

  void* FindMore(REFIID interfaceId) override {
    if (IsEqualIID(interfaceId, IID_IDispatch) || IsEqualIID(interfaceId, __uuidof(IWebBrowser)) ||
        IsEqualIID(interfaceId, __uuidof(IWebBrowserApp)) ||
        IsEqualIID(interfaceId, __uuidof(IWebBrowser2))) {
      return static_cast<IWebBrowser2*>(this);
    }
    if (IsEqualIID(interfaceId, __uuidof(IOleWindow))) return static_cast<IOleInPlaceObject*>(this);
    return nullptr;
  }
};

}  // namespace page
