// Objects that are only known by names at run time: "late-bound".
//
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/win32/com.h"

namespace platform {

/// Reads a property, or calls a method where the object has it as one; arguments in their order.
/// Throws when the object has no such member or the call fails.
///
///     Variant length;
///     GetMember(collection, L"length", {}, length);
void GetMember(const ComPtr<IDispatch>& object, const wchar_t* member,
               const std::vector<const VARIANT*>& arguments, Variant& answer);

/// The same by the number that the object's interface gives the member, whatever names it has of
/// its own.
void GetMember(const ComPtr<IDispatch>& object, DISPID member,
               const std::vector<const VARIANT*>& arguments, Variant& answer);

/// Writes a property. Throws as GetMember does.
void PutMember(const ComPtr<IDispatch>& object, const wchar_t* member, const VARIANT& value);

/// The object of a member's answer; throws where it answers none.
ComPtr<IDispatch> ObjectOf(Variant& answer);

/// The same as GetMember for a member that answers an object; throws where it answers none.
ComPtr<IDispatch> MemberObject(const ComPtr<IDispatch>& object, const wchar_t* member,
                               const std::vector<const VARIANT*>& arguments = {});

}  // namespace platform
