#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace zelkova::cli {

/// Runs the program with `arguments` (its own name left out) and answers its exit code: 0, 1 where the called
/// method failed, 2 for a request that cannot be read. Nothing stands on `out` unless all of it could be
/// made.
int runProgram(const std::vector<std::string>& arguments, std::istream& in, std::ostream& out,
               std::ostream& err);

}  // namespace zelkova::cli
