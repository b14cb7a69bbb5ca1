#pragma once

#include <string>

namespace zelkova {

/// Where the library lives.
class yPath {
 public:
  /// The folder from which the library was loaded (the program's own where it is linked in), without a
  /// separator at its end.
  std::string AppPath() const;
};

}  // namespace zelkova
