#include "cli/Session.h"

#include <utility>

#include "host/EmbeddedHost.h"
#include "host/xlsx/saveWorkbook.h"
#include "zelkova/frame/RunningObjects.h"
#include "zelkova/random/UniformStream.h"

namespace zelkova::cli {

using random::UniformStream;

Session::Session(std::optional<std::uint64_t> seed) {
  if (seed) UniformStream::get().set(*seed);
  startEmbeddedHost([this](const std::string& text) { messages_.push_back(text); });
}

Session::~Session() {
  UniformStream::get().unset();
  RunningObjects::remove(hostName);
}

Answer Session::run(Request& request) {
  messages_.clear();
  if (request.workbook() && request.workbook() != workbookPath_) {
    workbook_ = Workbook();
    workbookPath_ = request.workbook();
  }
  const Workbook before = request.workbook() ? workbook_.copy() : Workbook();
  Answer answer;
  try {
    const std::shared_ptr<void> instance = request.target().create();
    if (request.workbook()) handOver(request, instance.get());
    answer.result = request.method().call(instance.get(), request.values());
  } catch (const Failure& failure) {
    answer.failure = failure;
    // What was begun is not to be saved with the next drawing.
    if (request.workbook()) workbook_ = before;
  }
  answer.messages = std::move(messages_);
  return answer;
}

Answer Session::runAndSave(Request& request) {
  Answer answer = run(request);
  if (!request.workbook() || answer.failure) return answer;
  try {
    saveWorkbook(workbook_, *request.workbook());
  } catch (const Failure& failure) {
    answer.failure = failure;
  }
  return answer;
}

/// Gives the sheet of the request's workbook to a class that keeps one, and to arguments that are worksheets.
void Session::handOver(Request& request, void* instance) {
  const std::shared_ptr<Sheet> sheet = workbook_.firstSheet();
  for (const Argument& argument : request.method().arguments) {
    if (argument.type == ValueType::Sheet) request.set(argument, sheet);
  }
  const Method* keep = request.target().find("PassSheet");
  if (keep == nullptr || keep == &request.method()) return;
  Value passed = sheet;
  keep->call(instance, std::span(&passed, 1));
}

}  // namespace zelkova::cli
