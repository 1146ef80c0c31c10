// What the program reads a page through: a document, a collection and elements that are known by
// names only. All of it comes from the host, and none of it is parsed here.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/win32/com.h"
#include "tests/e2e/win32/control/page_connection.h"

namespace page {

/// The page that the host shows at the time of each question.
platform::ComPtr<IDispatch> MakeDocument(const std::shared_ptr<PageConnection>& connection);

}  // namespace page
