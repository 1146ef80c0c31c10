// The order of names with ICU, which WebKitGTK brings along.
//
// SPDX-License-Identifier: MIT
#include "platform/system/text_order.h"

#include "tests/contract/services_case.h"

namespace {

using TextOrderWithIcu = ServiceCase;

// The order of code points puts both after z.
TEST_F(TextOrderWithIcu, OrdersLettersThatDoNotDecomposeNextToSimilarOnes) {
  EXPECT_LT(platform::SortKey("Danish S\u00f8ren"), platform::SortKey("Danish Sune"));
  EXPECT_LT(platform::SortKey("Polish \u0141ucja"), platform::SortKey("Polish Zofia"));
}

}  // namespace
