#pragma once

#include <memory>
#include <string>
#include <vector>

#include "component/invoke.h"
#include "zelkova/frame/Host.h"

/// The running spreadsheet application, reached through automation: every object by name, whatever its type
/// library.
namespace zelkova {

/// A host's running application. Message boxes are real ones where the process has an interactive desktop;
/// elsewhere their texts go to the call's `UnshownMessages`.
class AutomationHost final : public Host {
 public:
  explicit AutomationHost(IDispatch* application);
  ~AutomationHost() override;

  WorksheetFunction& worksheetFunction() override;
  std::shared_ptr<Sheet> activeSheet() override;
  void messageBox(const std::string& text) override;

 private:
  class Functions;

  HostObject application_;
  std::unique_ptr<Functions> functions_;
};

/// Collects the texts of the boxes that cannot be shown on this thread while it lives. A call that raises one
/// may lead to another call within it; the innermost collects.
class UnshownMessages {
 public:
  UnshownMessages();
  UnshownMessages(const UnshownMessages&) = delete;
  UnshownMessages& operator=(const UnshownMessages&) = delete;
  ~UnshownMessages();

  const std::vector<std::string>& texts() const { return texts_; }

 private:
  friend class AutomationHost;

  UnshownMessages* outer_;
  std::vector<std::string> texts_;
};

}  // namespace zelkova
