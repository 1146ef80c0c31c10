// A place where nothing can be dropped.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <oleidl.h>

#include "platform/win32/com_object.h"

namespace platform {

class DropRefusal final : public ComObject<IDropTarget> {
 public:
  HRESULT STDMETHODCALLTYPE DragEnter(IDataObject*, DWORD, POINTL, DWORD* effect) override {
    return Refuse(effect);
  }
  HRESULT STDMETHODCALLTYPE DragOver(DWORD, POINTL, DWORD* effect) override {
    return Refuse(effect);
  }
  HRESULT STDMETHODCALLTYPE DragLeave() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Drop(IDataObject*, DWORD, POINTL, DWORD* effect) override {
    return Refuse(effect);
  }

 private:
  static HRESULT Refuse(DWORD* effect) {
    if (effect) *effect = DROPEFFECT_NONE;
    return S_OK;
  }
};

}  // namespace platform
