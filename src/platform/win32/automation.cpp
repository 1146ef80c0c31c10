// Late-bound calls.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/automation.h"

#include <cguid.h>

namespace platform {
namespace {

/// What went wrong inside the object; its texts are ours to free.
class Exception : public EXCEPINFO {
 public:
  Exception() : EXCEPINFO() {}
  Exception(const Exception&) = delete;
  Exception& operator=(const Exception&) = delete;
  ~Exception() {
    for (const BSTR text : {bstrSource, bstrDescription, bstrHelpFile}) SysFreeString(text);
  }
};

DISPID MemberOf(const ComPtr<IDispatch>& object, const wchar_t* member) {
  std::wstring name = member;
  wchar_t* names[] = {name.data()};
  DISPID number = DISPID_UNKNOWN;
  Check(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_INVARIANT, &number));
  return number;
}

}  // namespace

void GetMember(const ComPtr<IDispatch>& object, const wchar_t* member,
               const std::vector<const VARIANT*>& arguments, Variant& answer) {
  GetMember(object, MemberOf(object, member), arguments, answer);
}

void GetMember(const ComPtr<IDispatch>& object, DISPID member,
               const std::vector<const VARIANT*>& arguments, Variant& answer) {
  // They are passed last one first, and stay the caller's.
  std::vector<VARIANT> reversed;
  for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
    reversed.push_back(**argument);
  }
  DISPPARAMS parameters = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  Exception exception;
  UINT wrongArgument = 0;
  Check(object->Invoke(member, IID_NULL, LOCALE_INVARIANT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                       &parameters, &answer, &exception, &wrongArgument));
}

void PutMember(const ComPtr<IDispatch>& object, const wchar_t* member, const VARIANT& value) {
  VARIANT argument = value;  // stays the caller's
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {&argument, &put, 1, 1};
  Exception exception;
  UINT wrongArgument = 0;
  Check(object->Invoke(MemberOf(object, member), IID_NULL, LOCALE_INVARIANT, DISPATCH_PROPERTYPUT,
                       &parameters, nullptr, &exception, &wrongArgument));
}

ComPtr<IDispatch> ObjectOf(Variant& answer) {
  answer.As(VT_DISPATCH);
  if (!answer.pdispVal) throw std::runtime_error("the member answers no object");
  return ComPtr<IDispatch>::Share(answer.pdispVal);
}

ComPtr<IDispatch> MemberObject(const ComPtr<IDispatch>& object, const wchar_t* member,
                               const std::vector<const VARIANT*>& arguments) {
  Variant answer;
  GetMember(object, member, arguments, answer);
  return ObjectOf(answer);
}

}  // namespace platform
