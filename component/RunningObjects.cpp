#include "zelkova/frame/RunningObjects.h"

#include <wrl/client.h>

#include <string>

#include "component/AutomationHost.h"

/// In the component server the table of running objects is the operating system's.
namespace zelkova {

std::shared_ptr<Host> RunningObjects::get(std::string_view name) {
  using Microsoft::WRL::ComPtr;
  const auto missing = [&](const std::string& why) {
    raise(FailureNumber::NoHost, "no running host was found under \"" + std::string(name) + "\": " + why);
  };
  CLSID id;
  if (FAILED(CLSIDFromProgID(wide(name).c_str(), &id))) missing("no program of that name is installed");
  ComPtr<IUnknown> running;
  if (FAILED(GetActiveObject(id, nullptr, &running))) missing("start the spreadsheet program first");
  ComPtr<IDispatch> application;
  if (FAILED(running.As(&application))) missing("what runs there takes no calls by name");
  return std::make_shared<AutomationHost>(application.Get());
}

}  // namespace zelkova
