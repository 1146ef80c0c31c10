// What COM asks a library for: the factory of its one class.
//
// SPDX-License-Identifier: MIT
#include "core/attempt.h"
#include "tests/e2e/win32/control/page_control.h"

namespace {

class Factory final : public platform::ComObject<IClassFactory> {
 public:
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID interfaceId,
                                           void** object) override {
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    return core::AttemptOr(E_OUTOFMEMORY, [&] {
      const auto made =
          platform::ComPtr<IWebBrowser2>::Share(static_cast<IWebBrowser2*>(new page::PageControl));
      return made->QueryInterface(interfaceId, object);
    });
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

}  // namespace

STDAPI DllGetClassObject(REFCLSID, REFIID interfaceId, void** object) {
  *object = nullptr;
  return core::AttemptOr(E_OUTOFMEMORY, [&] {
    return platform::ComPtr<IClassFactory>::Share(new Factory)->QueryInterface(interfaceId, object);
  });
}

/// Never: it ends with the process.
STDAPI DllCanUnloadNow() { return S_FALSE; }
