#pragma once

#include <string>

#include "zelkova/catalogue/Catalogue.h"

namespace zelkova::cli {

// The catalogue in the three forms that the program prints. Each text ends with a line end.

std::string listText();
std::string listJson();
std::string listMarkdown();

std::string describeText(const Class& subject);
std::string describeText(const Class& subject, const Method& method);

std::string describeJson(const Class& subject);
std::string describeJson(const Class& subject, const Method& method);

/// The page of a class in the reference documentation.
std::string describeMarkdown(const Class& subject);

}  // namespace zelkova::cli
