// Comparing bytes with a file of tests/data.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/folders.h"
#include "tests/support/temporary_folder.h"

/// Fails where `bytes` are not those of the file. With VELOR_UPDATE_GOLDEN in the environment the
/// file is written instead; that fails too, since nothing has been compared then: see
/// scripts/update-golden-files.
inline void ExpectGolden(const std::string& file, const std::string& bytes) {
  const auto path = std::filesystem::path(support::kTestDataFolder) / file;
  if (std::getenv("VELOR_UPDATE_GOLDEN") != nullptr) {
    support::WriteBytes(path, bytes);
    ADD_FAILURE() << "written, not compared: " << file;
    return;
  }
  const std::string golden = support::ReadBytes(path);
  const auto differs = std::ranges::mismatch(golden, bytes).in1 - golden.begin();
  EXPECT_TRUE(golden == bytes) << file << " differs from byte " << differs << " on; it has "
                               << golden.size() << " bytes, the page " << bytes.size();
}
