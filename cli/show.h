#pragma once

#include <string>

#include "cli/Request.h"
#include "cli/Session.h"

namespace zelkova::cli {

/// How many significant digits a reader sees; 0 shows all that it takes to read the same number back.
constexpr int allDigits = 0;

/// The outputs of a call that ended well, for a reader: slots with their names, set in columns; `NoValue` is
/// a dash.
std::string showAnswer(const Request& request, const Answer& answer, int digits);

}  // namespace zelkova::cli
