// Every member of IWebBrowser2 that the program has no use for: each answers that it is not there,
// so that a program which comes to use one fails its tests. What it does use is in page_control.h.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <exdisp.h>

namespace page {

class RefusingBrowser : public IWebBrowser2 {
 public:
  HRESULT STDMETHODCALLTYPE GoBack() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GoForward() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GoHome() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GoSearch() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Navigate(BSTR, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Refresh() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Refresh2(VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Stop() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Application(IDispatch**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Parent(IDispatch**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Container(IDispatch**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_TopLevelContainer(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Type(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Left(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Left(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Top(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Top(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Width(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Width(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Height(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Height(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LocationName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LocationURL(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Busy(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Quit() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ClientToWindow(int*, int*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE PutProperty(BSTR, VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetProperty(BSTR, VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Name(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_HWND(SHANDLE_PTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FullName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Path(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Visible(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Visible(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_StatusBar(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_StatusBar(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_StatusText(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_StatusText(BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ToolBar(int*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_ToolBar(int) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_MenuBar(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_MenuBar(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_FullScreen(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_FullScreen(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE QueryStatusWB(OLECMDID, OLECMDF*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ShowBrowserBar(VARIANT*, VARIANT*, VARIANT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_ReadyState(READYSTATE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Offline(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Offline(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Silent(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_RegisterAsBrowser(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_RegisterAsBrowser(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_RegisterAsDropTarget(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_TheaterMode(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_TheaterMode(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_AddressBar(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_AddressBar(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Resizable(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Resizable(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }
};

}  // namespace page

// Known by the number of the interface that it stands for.
__CRT_UUID_DECL(page::RefusingBrowser, 0xd30c1661, 0xcdaf, 0x11d0, 0x8a, 0x3e, 0x00, 0xc0, 0x4f,
                0xc9, 0xe2, 0x6e)
