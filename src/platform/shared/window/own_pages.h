// Which pages the browser may go to, by how their addresses compare. Standard library only.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The pages that the host has navigated a browser to. Paths and addresses are UTF-8. Spellings of
/// one page compare equal: as path or file: address, with slashes of either kind, with or without
/// percent escapes, in any case of ASCII letters, and with a query or fragment after it.
class OwnPages {
 public:
  /// Call before the host navigates to `path`, which becomes the current page.
  void Navigate(std::string_view path);

  /// Whether a navigation to `address` is refused. The current page is allowed, wherever it is
  /// stored; earlier pages are refused; of all others those are allowed that `isLocal` is true for.
  bool IsRefused(std::string_view address, bool isLocal) const;

 private:
  /// Without repetitions; the last one is the current page.
  std::vector<std::string> mPages;
};

}  // namespace platform
