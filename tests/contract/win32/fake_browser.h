// A WebBrowser control of this process: what the program requests of it is recorded, and a case
// fires its events. While a FakeBrowserClass exists, every control that the program creates is a
// FakeBrowser.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/attempt.h"
#include "tests/e2e/win32/control/basic_control.h"

class FakeBrowser final : public page::BasicControl {
 public:
  HRESULT STDMETHODCALLTYPE Navigate2(VARIANT*, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ExecWB(OLECMDID command, OLECMDEXECOPT, VARIANT* argument,
                                   VARIANT*) override {
    if (command != OLECMDID_OPTICAL_ZOOM) return E_NOTIMPL;
    zooms.push_back(argument->lVal);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Document(IDispatch** shown) override {
    *shown = document ? document.Get() : nullptr;
    if (!*shown) return S_FALSE;
    (*shown)->AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE DoVerb(LONG, LPMSG, IOleClientSite*, LONG, HWND, LPCRECT) override {
    return verbResult;
  }
  HRESULT STDMETHODCALLTYPE UIDeactivate() override {
    ++deactivations;
    return S_OK;
  }

  /// Whether the program cancels a navigation to this address; an empty VARIANT is none.
  bool Cancels(VARIANT address) { return IsCancelled(address); }
  bool Cancels(std::wstring_view address) { return IsCancelled(platform::Variant(address)); }

  /// The program's site; throws where it lacks the interface.
  template <class Interface>
  platform::ComPtr<Interface> Site() const {
    return mSite.As<Interface>();
  }

  platform::ComPtr<IDispatch> document;
  /// Percents, as the program set them.
  std::vector<long> zooms;
  int deactivations = 0;
  static inline HRESULT verbResult = S_OK;
};

class FakeBrowserClass {
 public:
  FakeBrowserClass() {
    platform::EnterApartment();
    FakeBrowser::verbResult = S_OK;
    platform::Check(CoRegisterClassObject(__uuidof(WebBrowser), &mFactory, CLSCTX_INPROC_SERVER,
                                          REGCLS_MULTIPLEUSE, &mCookie));
  }
  ~FakeBrowserClass() { CoRevokeClassObject(mCookie); }
  FakeBrowserClass(const FakeBrowserClass&) = delete;
  FakeBrowserClass& operator=(const FakeBrowserClass&) = delete;

  /// The control that was created last.
  FakeBrowser& Last() const { return static_cast<FakeBrowser&>(*mFactory.last.Get()); }

 private:
  /// Destroyed with its owner, whoever still counts.
  class Factory final : public IClassFactory {
   public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
      *object = nullptr;
      if (!IsEqualIID(interfaceId, IID_IUnknown) &&
          !IsEqualIID(interfaceId, __uuidof(IClassFactory))) {
        return E_NOINTERFACE;
      }
      *object = this;
      return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID interfaceId,
                                             void** object) override {
      *object = nullptr;
      return core::AttemptOr(E_OUTOFMEMORY, [&] {
        last = platform::ComPtr<IWebBrowser2>::Share(new FakeBrowser);
        return last->QueryInterface(interfaceId, object);
      });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

    platform::ComPtr<IWebBrowser2> last;
  };

  Factory mFactory;
  DWORD mCookie = 0;
};
