#pragma once

#include <iosfwd>
#include <string>

#include "cli/Session.h"

namespace zelkova::cli {

/// Answers one line of a batch: the answer, or `{"error": "..."}` for a line that is no request.
std::string answerLine(Session& session, const std::string& line);

/// Reads JSON lines and writes one line for each, in order, flushing each.
void runBatch(Session& session, std::istream& in, std::ostream& out);

}  // namespace zelkova::cli
