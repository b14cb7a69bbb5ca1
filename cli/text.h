#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace zelkova::cli {

/// `text` as a JSON string, quotes included.
std::string jsonText(std::string_view text);

/// `text`, cut short where it is long.
std::string shortened(std::string_view text);

/// `text` in quotes for a line of an error: one line whatever it holds, and cut short where it is long.
std::string inQuotes(std::string_view text);

/// All that can be read from `in`; RequestError, naming it, where it cannot be read.
std::string readAll(std::istream& in, const std::string& name);

/// The content of a file; RequestError where it cannot be opened or read.
std::string readFile(const std::string& path);

}  // namespace zelkova::cli
