// What the shipped program is built with. The server may be set to another one for a build; what is
// said here holds for every one that is shipped.
//
// SPDX-License-Identifier: MIT
#include "core/build_settings.h"

#include <gtest/gtest.h>

namespace {

TEST(BuildSettings, TrustNothingBesidesTheSystemsStoreInTheShippedProgram) {
  EXPECT_EQ(core::kAdditionalTrustedCa, "");
}

TEST(BuildSettings, NameADownloadServer) { EXPECT_FALSE(core::kDownloadServer.empty()); }

TEST(BuildSettings, NameTheCompanyAsItsDataFoldersAreNamed) {
  EXPECT_EQ(core::kCompanyName, "Velor Software");
}

TEST(BuildSettings, NameTheProductAndItsMajorVersion) {
  EXPECT_EQ(core::kProductName, "Velor Voice Setup");
  EXPECT_GE(core::kMajorVersion, 1);
}

}  // namespace
