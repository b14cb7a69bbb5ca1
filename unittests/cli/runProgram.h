#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "cli/program.h"

namespace zelkova::cli {

/// What a run of the program left behind.
struct Outcome {
  int code;
  std::string out, err;
};

/// Runs the program in process.
inline Outcome run(const std::vector<std::string>& arguments, const std::string& input = "") {
  std::istringstream in(input);
  std::ostringstream out, err;
  const int code = runProgram(arguments, in, out, err);
  return {code, out.str(), err.str()};
}

}  // namespace zelkova::cli
