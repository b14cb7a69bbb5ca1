#include <iostream>

#include "cli/program.h"

int main(int count, char** words) {
  std::ios::sync_with_stdio(false);
  const std::vector<std::string> arguments(words + 1, words + count);
  const int code = zelkova::cli::runProgram(arguments, std::cin, std::cout, std::cerr);
  if (std::cout.flush()) return code;
  std::cerr << "zelkova: the output cannot be written\n";
  return 2;
}
