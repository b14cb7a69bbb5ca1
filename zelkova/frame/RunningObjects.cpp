#include "zelkova/frame/RunningObjects.h"

#include <map>
#include <utility>

namespace zelkova {

namespace {

std::map<std::string, std::shared_ptr<Host>, std::less<>>& table() {
  static std::map<std::string, std::shared_ptr<Host>, std::less<>> objects;
  return objects;
}

}  // namespace

void RunningObjects::add(std::string_view name, std::shared_ptr<Host> host) {
  if (host == nullptr) raise(FailureNumber::InvalidCall, "there is no host to add");
  table().insert_or_assign(std::string(name), std::move(host));
}

void RunningObjects::remove(std::string_view name) {
  const auto found = table().find(name);
  if (found != table().end()) table().erase(found);
}

std::shared_ptr<Host> RunningObjects::get(std::string_view name) {
  const auto found = table().find(name);
  if (found == table().end()) {
    raise(FailureNumber::NoHost, "no running host was found under \"" + std::string(name) + "\"");
  }
  return found->second;
}

}  // namespace zelkova
