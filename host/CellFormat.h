#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <deque>
#include <map>
#include <string>

#include "zelkova/frame/Host.h"

namespace zelkova {

/// The six lines of one cell.
enum class CellLine { Left, Top, Bottom, Right, DiagonalDown, DiagonalUp };
constexpr std::size_t cellLines = 6;

struct LineFormat {
  LineStyle style = LineStyle::None;
  BorderWeight weight = BorderWeight::Thin;
  int color = automaticColor;

  friend auto operator<=>(const LineFormat&, const LineFormat&) = default;  // NOLINT(modernize-use-nullptr)
};

struct FontFormat {
  std::string name = "Calibri";
  double size = 11;
  bool bold = false;
  int color = automaticColor;

  friend auto operator<=>(const FontFormat&, const FontFormat&) = default;  // NOLINT(modernize-use-nullptr)
};

/// How one cell looks. Alignments that were never set are the host's "general" and "bottom".
struct CellFormat {
  static constexpr HorizontalAlignment general{1};

  FontFormat font;
  int interior = noColor;
  HorizontalAlignment horizontal = general;
  VerticalAlignment vertical = VerticalAlignment::Bottom;
  bool wrap = false;
  int orientation = 0;  ///< degrees, counter-clockwise
  std::string numberFormat = "General";
  std::array<LineFormat, cellLines> lines{};

  LineFormat& line(CellLine which) { return lines[static_cast<std::size_t>(which)]; }
  const LineFormat& line(CellLine which) const { return lines[static_cast<std::size_t>(which)]; }

  friend auto operator<=>(const CellFormat&, const CellFormat&) = default;  // NOLINT(modernize-use-nullptr)
};

/// The formats of a sheet, each kept once. Number 0 is the format of a cell that nobody touched.
class FormatTable {
 public:
  using Id = std::uint32_t;

  FormatTable() { id(CellFormat()); }

  Id id(const CellFormat& format) {
    const auto [entry, isNew] = ids_.try_emplace(format, static_cast<Id>(formats_.size()));
    if (isNew) formats_.push_back(format);
    return entry->second;
  }
  const CellFormat& operator[](Id id) const { return formats_[id]; }
  std::size_t size() const { return formats_.size(); }

 private:
  std::map<CellFormat, Id> ids_;
  std::deque<CellFormat> formats_;  ///< what stands in it stays where it is
};

}  // namespace zelkova
