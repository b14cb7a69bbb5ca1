#include <fstream>
#include <iostream>

#include "component/idl.h"

/// Writes the interface definition into the file that the one argument names.
int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "one argument is needed, the file to write\n";
    return 2;
  }
  std::ofstream file(argv[1], std::ios::binary);
  file << zelkova::interfaceDefinition(zelkova::Catalogue::get());
  file.close();
  if (file.good()) return 0;
  std::cerr << argv[1] << " cannot be written\n";
  return 1;
}
