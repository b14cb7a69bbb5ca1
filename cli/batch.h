#pragma once

#include <iosfwd>
#include <string>

#include "cli/Session.h"

namespace zelkova::cli {

/// Answers one line of a batch: the answer, or `{"error": "..."}` for a line that is no request.
/// What is doubtful in a request goes to `warnings`, a line each that names the request: by its id, or as
/// `place` where it has none.
std::string answerLine(Session& session, const std::string& line, const std::string& place,
                       std::ostream& warnings);

/// Reads JSON lines and writes one line for each, in order, flushing each; warnings go to `err`.
void runBatch(Session& session, std::istream& in, std::ostream& out, std::ostream& err);

}  // namespace zelkova::cli
