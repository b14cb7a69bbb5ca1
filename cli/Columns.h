#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zelkova::cli {

/// Lines of text cells, set out in columns that stand under each other.
class Columns {
 public:
  enum class Align { Left, Right };

  /// Column j of every line is set as `alignment[j]` says; columns beyond it are set left.
  explicit Columns(std::vector<Align> alignment = {}) : alignment_(std::move(alignment)) {}

  void add(std::vector<std::string> cells) { lines_.push_back(std::move(cells)); }

  /// The lines, two blanks between the columns, each ended by a line end.
  std::string text() const;

 private:
  std::vector<Align> alignment_;
  std::vector<std::vector<std::string>> lines_;
};

}  // namespace zelkova::cli
