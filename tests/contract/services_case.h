// What the cases about services share.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/contract/services_driver.h"

class ServiceCase : public testing::Test {
 protected:
  ServiceCase() { peer::Begin(); }

  /// A path in the case's folder.
  static std::string In(const std::string& name) { return peer::Folder() + '\\' + name; }
};
