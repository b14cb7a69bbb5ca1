#include "cli/Columns.h"

#include <algorithm>

namespace zelkova::cli {

namespace {

/// How many characters a UTF-8 text shows.
std::size_t width(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

std::string Columns::text() const {
  std::vector<std::size_t> widths;
  for (const auto& line : lines_) {
    if (line.size() > widths.size()) widths.resize(line.size());
    for (std::size_t j = 0; j < line.size(); ++j) widths[j] = std::max(widths[j], width(line[j]));
  }
  std::string text;
  for (const auto& line : lines_) {
    std::string set;
    for (std::size_t j = 0; j < line.size(); ++j) {
      const std::string padding(widths[j] - width(line[j]), ' ');
      const bool right = j < alignment_.size() && alignment_[j] == Align::Right;
      set += (j == 0 ? "" : "  ") + (right ? padding + line[j] : line[j] + padding);
    }
    set.erase(set.find_last_not_of(' ') + 1);
    text += set + "\n";
  }
  return text;
}

}  // namespace zelkova::cli
