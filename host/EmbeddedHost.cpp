#include "host/EmbeddedHost.h"

#include <iostream>
#include <utility>

#include "zelkova/frame/RunningObjects.h"

namespace zelkova {

EmbeddedHost::EmbeddedHost(MessageHandler showMessage) : showMessage_(std::move(showMessage)) {
  if (!showMessage_) showMessage_ = [](const std::string& text) { std::cerr << text << std::endl; };
}

std::shared_ptr<EmbeddedHost> startEmbeddedHost(EmbeddedHost::MessageHandler showMessage) {
  auto host = std::make_shared<EmbeddedHost>(std::move(showMessage));
  RunningObjects::add(hostName, host);
  return host;
}

}  // namespace zelkova
