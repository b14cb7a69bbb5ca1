#include "cli/Session.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "cli/text.h"
#include "host/EmbeddedHost.h"
#include "host/xlsx/saveWorkbook.h"
#include "zelkova/frame/RunningObjects.h"
#include "zelkova/random/UniformStream.h"

namespace zelkova::cli {

using random::UniformStream;

namespace {

/// Whether a method works on the sheet that it is given, rather than draw a whole form.
bool touchesUp(const Method& method) {
  return std::any_of(method.arguments.begin(), method.arguments.end(),
                     [](const Argument& argument) { return argument.type == ValueType::Sheet; });
}

}  // namespace

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
    if (touchesUp(request.method()) && std::filesystem::exists(*request.workbook())) {
      throw RequestError(
          inQuotes(*request.workbook()) + " is not what was drawn last: " + request.name() +
          " would begin a blank sheet in its place; draw the form again, or name another file");
    }
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
