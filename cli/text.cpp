#include "cli/text.h"

#include <array>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli/Request.h"

namespace zelkova::cli {

std::string jsonText(std::string_view text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string shortened(std::string_view text) {
  constexpr std::size_t longest = 60;
  if (text.size() <= longest) return std::string(text);
  const auto continues = [&](std::size_t at) {
    return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
  };
  std::size_t end = longest;
  while (end > 0 && continues(end)) --end;
  return std::string(text.substr(0, end)) + "...";
}

std::string inQuotes(std::string_view text) { return jsonText(shortened(text)); }

std::string readAll(std::istream& in, const std::string& name) {
  std::string text;
  std::array<char, 1 << 16> block;
  while (in.read(block.data(), block.size()) || in.gcount() > 0) {
    text.append(block.data(), static_cast<std::size_t>(in.gcount()));
  }
  if (in.bad()) throw RequestError(name + ": cannot be read");
  return text;
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw RequestError(path + ": cannot be opened");
  return readAll(file, path);
}

}  // namespace zelkova::cli
