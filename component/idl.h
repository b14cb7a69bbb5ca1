#pragma once

#include <string>

#include "zelkova/catalogue/Catalogue.h"

namespace zelkova {

/// The interface definition of every class of the catalogue, for the type library's compiler. It stands
/// alone: what it needs of automation's own types is declared in it.
///
/// Arrays are declared as VARIANT, so that a client may pass typed arrays, arrays of variants and ranges
/// alike. So is an optional argument that has a number for default, since the compiler cannot write that
/// number; its help text says it.
std::string interfaceDefinition(const Catalogue& catalogue);

}  // namespace zelkova
