#ifndef CAMCFG_TORTURE_SALVAGE_RECOVERY_H
#define CAMCFG_TORTURE_SALVAGE_RECOVERY_H

#include <string>

#include "camcfg/testkit/device_root.h"

namespace camcfg::torture {

/// What `xmllint --recover` makes of damaged XML, for comparison.
class Recovery {
 public:
  /// Whether the program is installed.
  static bool isThere();

  /// What it prints of a text; empty if it prints nothing.
  std::string of(const std::string& text) const;
  /// The same with the text inside of one element: by itself, a document with several elements at its
  /// top ends for xmllint after the first one.
  std::string inOneElement(const std::string& text) const;

 private:
  testkit::DeviceRoot directory_{testkit::DeviceRoot::StayOut};
};

}  // namespace camcfg::torture

#endif
