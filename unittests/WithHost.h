#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "host/EmbeddedHost.h"
#include "zelkova/frame/RunningObjects.h"

namespace zelkova {

/// A test during which an embedded host runs.
class WithHost : public testing::Test {
 protected:
  WithHost() : host(startEmbeddedHost()) {}
  ~WithHost() override { RunningObjects::remove(hostName); }

  std::shared_ptr<EmbeddedHost> host;
};

}  // namespace zelkova
