// What assistive technology is told of a page beyond what the page says.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/win32/com.h"

namespace platform {

/// Names the boxes and what is busy, as platform/window/web_browser.h promises, in this page.
void DescribePage(const ComPtr<IDispatch>& document, const std::string& busyText);

}  // namespace platform
