// Stands for the system's WebBrowser control in the tests' own prefix, where the system has no
// engine: a window, the interfaces that the program uses, and a connection to the host that shows
// the page. It must not know what the program expects; it tells what the engine does.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <ocidl.h>
#include <oleidl.h>

#include <memory>

#include "platform/win32/com_object.h"
#include "tests/e2e/win32/control/page_connection.h"
#include "tests/e2e/win32/control/refusing_browser.h"

namespace page {

class PageControl final : public platform::ComObject<RefusingBrowser, IOleObject, IOleInPlaceObject,
                                                     IOleInPlaceActiveObject, IPersistStreamInit,
                                                     IConnectionPointContainer, IConnectionPoint> {
 public:
  PageControl() = default;

  // IWebBrowser2: what the program uses.
  HRESULT STDMETHODCALLTYPE Navigate2(VARIANT* address, VARIANT*, VARIANT*, VARIANT*,
                                      VARIANT*) override;
  HRESULT STDMETHODCALLTYPE get_Document(IDispatch** document) override;
  HRESULT STDMETHODCALLTYPE ExecWB(OLECMDID command, OLECMDEXECOPT, VARIANT* argument,
                                   VARIANT*) override;
  HRESULT STDMETHODCALLTYPE put_Silent(VARIANT_BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE put_RegisterAsDropTarget(VARIANT_BOOL) override { return S_OK; }

  // IOleObject
  HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) override;
  HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** site) override;
  HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Close(DWORD) override;
  HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DoVerb(LONG verb, LPMSG message, IOleClientSite*, LONG, HWND parent,
                                   LPCRECT place) override;
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
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InPlaceDeactivate() override;
  HRESULT STDMETHODCALLTYPE UIDeactivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetObjectRects(LPCRECT place, LPCRECT) override;
  HRESULT STDMETHODCALLTYPE ReactivateAndUndo() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG message) override;
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
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID events, IConnectionPoint** point) override;
  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* listener, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD) override;
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

 private:
  void* FindMore(REFIID interfaceId) override;
  static LRESULT CALLBACK HandleMessage(HWND window, UINT message, WPARAM first, LPARAM second);
  LRESULT Handle(UINT message, WPARAM first, LPARAM second);
  void Activate(HWND parent, const RECT& place);
  void TellSite();
  void TellPolicy();
  void TakeEvents();
  void Told(const Fields& event);
  void Resized();
  void Paint(HDC screen);

  bool IsCancelled(const std::string& address);
  bool IsNewWindowCancelled(const std::string& address);
  void Fire(DISPID event, VARIANT* arguments, UINT count);
  void FireAddress(DISPID event, const std::string& address);

  std::shared_ptr<PageConnection> mConnection;
  platform::ComPtr<IOleClientSite> mSite;
  platform::ComPtr<IDispatch> mListener;
  HWND mWindow = nullptr;
  bool mShown = false;
};

}  // namespace page
