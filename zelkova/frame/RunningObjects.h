#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "zelkova/frame/Host.h"

namespace zelkova {

/// Under this name a host stands in the table of running objects.
inline constexpr std::string_view hostName = "Excel.Application";

/// The table of running objects: where a class finds its host. One for the process.
class RunningObjects {
 public:
  /// Puts `host` into the table under `name`, in place of what stood there.
  static void add(std::string_view name, std::shared_ptr<Host> host);

  /// Takes `name` out of the table; nothing happens where it does not stand there.
  static void remove(std::string_view name);

  /// The object under `name`; failure 429 with a text that says what is missing where there is none.
  static std::shared_ptr<Host> get(std::string_view name);
};

/// The running host, held for as long as the answer lives: by an instance of a class that binds, or for the
/// length of one routine. Failure 429 where no host runs.
inline std::shared_ptr<Host> runningHost() { return RunningObjects::get(hostName); }

}  // namespace zelkova
