#pragma once

#include <functional>

#include "component/standin/Object.h"
#include "host/EmbeddedHost.h"

namespace zelkova {

/// The application: `Name`, `WorksheetFunction`, `ActiveSheet`, `Worksheets` and `Quit`.
class ApplicationObject final : public Object {
 public:
  /// `quit` ends the program.
  explicit ApplicationObject(std::function<void()> quit);

 private:
  EmbeddedHost host_;
};

}  // namespace zelkova
