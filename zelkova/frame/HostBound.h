#pragma once

#include <memory>

#include "zelkova/frame/RunningObjects.h"

namespace zelkova {

/// The frame of the classes that bind to the host: the reference is taken at creation, which raises
/// failure 429 where no host runs, and released with the instance.
class HostBound {
 public:
  HostBound() : xlApp(runningHost()) {}

 protected:
  WorksheetFunction& worksheetFunction() const { return xlApp->worksheetFunction(); }

  std::shared_ptr<Host> xlApp;
};

}  // namespace zelkova
