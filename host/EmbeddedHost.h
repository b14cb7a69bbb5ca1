#pragma once

#include <functional>
#include <memory>
#include <string>

#include "host/EmbeddedWorksheetFunction.h"
#include "host/Workbook.h"
#include "zelkova/frame/Host.h"

namespace zelkova {

/// What the engine runs on where there is no spreadsheet: its own worksheet functions, a workbook in memory,
/// and a message box whose text goes to a handler.
class EmbeddedHost final : public Host {
 public:
  using MessageHandler = std::function<void(const std::string&)>;

  /// Without a handler, messages go to the standard error stream, a line each.
  explicit EmbeddedHost(MessageHandler showMessage = {});

  WorksheetFunction& worksheetFunction() override { return worksheetFunction_; }
  std::shared_ptr<Sheet> activeSheet() override { return workbook_.firstSheet(); }
  void messageBox(const std::string& text) override { showMessage_(text); }

  Workbook& workbook() { return workbook_; }

 private:
  EmbeddedWorksheetFunction worksheetFunction_;
  Workbook workbook_;
  MessageHandler showMessage_;
};

/// Starts an embedded host and puts it into the table of running objects under `hostName`, in place of what
/// stood there. It runs until it is taken out or replaced, and for as long as anyone holds it.
std::shared_ptr<EmbeddedHost> startEmbeddedHost(EmbeddedHost::MessageHandler showMessage = {});

}  // namespace zelkova
