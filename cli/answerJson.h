#pragma once

#include <string>

#include "cli/Request.h"
#include "cli/Session.h"

namespace zelkova::cli {

/// A value as JSON: numbers with the shortest digits that read back the same, `NoValue` and arrays that were
/// never filled as null, tables as arrays of rows.
void appendJson(std::string& out, const Value& value);

/// The answer to a request as one line of JSON, without a line end.
std::string answerJson(const Request& request, const Answer& answer);

}  // namespace zelkova::cli
