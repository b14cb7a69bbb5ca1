#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "host/EmbeddedHost.h"
#include "zelkova/frame/RunningObjects.h"

namespace zelkova {

/// A test during which an embedded host runs.
class WithHost : public testing::Test {
 protected:
  WithHost() : host(startEmbeddedHost([this](const std::string& text) { messages.push_back(text); })) {}
  ~WithHost() override { RunningObjects::remove(hostName); }

  std::vector<std::string> messages;  ///< texts of the message boxes that were shown
  std::shared_ptr<EmbeddedHost> host;
};

}  // namespace zelkova
