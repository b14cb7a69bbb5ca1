#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/EmbeddedHost.h"
#include "zelkova/frame/RunningObjects.h"

namespace zelkova {
namespace {

// Fault: a host that classes do not find, or whose messages and cells go elsewhere.
TEST(EmbeddedHost, IsWhatClassesFind) {
  std::vector<std::string> messages;
  const auto host = startEmbeddedHost([&](const std::string& text) { messages.push_back(text); });
  const auto found = runningHost();
  EXPECT_EQ(found, host);
  found->messageBox("no groups");
  EXPECT_EQ(messages, std::vector<std::string>{"no groups"});
  found->activeSheet()->range("B2")->setValue(Variant(4.5));
  EXPECT_EQ(host->workbook().firstSheet()->cell(2, 2), Variant(4.5));
  EXPECT_EQ(found->worksheetFunction().Gcd(12, 18), 6);
  RunningObjects::remove(hostName);
}

}  // namespace
}  // namespace zelkova
