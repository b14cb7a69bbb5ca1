#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/Request.h"
#include "host/Workbook.h"

namespace zelkova::cli {

/// What came of a call; the outputs stand in the request's values.
struct Answer {
  Value result;
  std::optional<Failure> failure;
  std::vector<std::string> messages;  ///< texts of the message boxes, in order
};

/// The embedded host, running for as long as the session lives, and the calls made on it. With a seed, the
/// stream of random draws starts there and goes on from call to call; without, it starts from the clock, and
/// anew where a method says so.
class Session {
 public:
  explicit Session(std::optional<std::uint64_t> seed = std::nullopt);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// A request that names a workbook draws on its sheet: a new one, or the one that was drawn on last, where
  /// that was of the same workbook. A failure leaves the sheet as it was.
  /// RequestError for a method that touches up a file which was not drawn last: it would be lost.
  Answer run(Request& request);

  /// Runs the request and, where that went well, saves the workbook that it names.
  Answer runAndSave(Request& request);

  /// What was drawn on last.
  const Workbook& workbook() const { return workbook_; }

 private:
  void handOver(Request& request, void* instance);

  std::optional<std::string> workbookPath_;
  Workbook workbook_;
  std::vector<std::string> messages_;
};

}  // namespace zelkova::cli
