#include "cli/Session.h"

#include <utility>

#include "host/EmbeddedHost.h"
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
  Answer answer;
  try {
    const std::shared_ptr<void> instance = request.target().create();
    answer.result = request.method().call(instance.get(), request.values());
  } catch (const Failure& failure) {
    answer.failure = failure;
  }
  answer.messages = std::move(messages_);
  return answer;
}

}  // namespace zelkova::cli
