#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/CellFormat.h"
#include "host/references.h"
#include "zelkova/frame/Host.h"

namespace zelkova {

/// A list that cells accept.
struct ValidationRule {
  std::string list;  ///< entries with commas between
  bool ignoreBlank = true;
  bool inCellDropdown = true;
  std::string inputTitle, inputMessage, errorTitle, errorMessage;
  bool showInput = true;
  bool showError = true;

  friend bool operator==(const ValidationRule&, const ValidationRule&) = default;
};

/// A comment with its box, in points.
struct CommentBox {
  std::string text;
  FontFormat font{"Tahoma", 8, false, automaticColor};
  double width = 96;
  double height = 55.5;

  friend bool operator==(const CommentBox&, const CommentBox&) = default;
};

/// A sheet that lives in memory: what the cells hold, how they look, and what they accept.
class MemorySheet final : public Sheet, public std::enable_shared_from_this<MemorySheet> {
 public:
  using Place = std::pair<Index, Index>;  ///< row and column
  using Rule = std::shared_ptr<ValidationRule>;

  explicit MemorySheet(std::string name) : name_(std::move(name)) {}

  std::string name() const override { return name_; }
  std::unique_ptr<Range> range(std::string_view address) override;
  std::unique_ptr<Range> rows(std::string_view address) override;
  std::unique_ptr<Range> columns(std::string_view address) override;
  std::unique_ptr<Range> cells(const CellArea& area);

  Variant cell(Index row, Index column) const;

  /// As the host takes values: a text that is a number becomes that number, except in a cell of the text
  /// format
  /// "@". Failure 1004 for a formula that cannot be one: nothing in it, a text or parenthesis that is not
  /// closed, an operator without what follows; and for a text that is not UTF-8.
  void setCell(Index row, Index column, const Variant& value);

  const CellFormat& format(Index row, Index column) const { return formats_[formatId(row, column)]; }

  /// Changes how each cell of the area looks.
  void reformat(const CellArea& area, const std::function<void(CellFormat&)>& change);

  /// Changes lines of an area. Neighbours share the line between them. Failure 1004 for the lines inside an
  /// area that has none.
  void redraw(const CellArea& area, BorderItem item, const std::function<void(LineFormat&)>& change);

  /// One cell of an area looks as its upper left one does and holds what that holds. Failure 1004 where
  /// another such area lies partly outside.
  void merge(const CellArea& area);
  void separate(const CellArea& area);

  /// The merged area that the cell belongs to, or nothing.
  const CellArea* mergedAt(Index row, Index column) const;

  /// Takes the rules off the cells of the area; those of the cells around it stay.
  void eraseRules(const CellArea& area);

  /// Failure 1004 where a rule stands, and for a list that is empty or longer than 255 bytes.
  Rule addRule(const CellArea& area, const std::string& list);

  /// The rule of a cell, or nothing.
  Rule ruleAt(Index row, Index column) const;

  /// Failure 1004 where the cell has a comment.
  std::shared_ptr<CommentBox> addComment(Index row, Index column, const std::string& text);
  std::shared_ptr<CommentBox> commentAt(Index row, Index column) const;

  /// The comment of a cell, to be changed, or nothing.
  std::unique_ptr<Comment> comment(Index row, Index column);

  void setColumnWidth(const CellArea& area, double characters);
  void setRowHeight(const CellArea& area, double points);
  double columnWidth(Index column) const;
  double rowHeight(Index row) const;

  /// Values, formats, rules, comments and merged areas close up, references follow; sizes move with whole
  /// rows and columns. Failure 1004 where a merged area would be torn.
  void deleteCells(const Deletion& deletion);

  /// Empties the cells and takes formats, rules and comments off; merged areas that they meet come apart.
  void clear(const CellArea& area);

  /// Back to untouched cells, sizes included.
  void clear();

  /// A sheet of its own that holds the same.
  std::shared_ptr<MemorySheet> copy() const;

  // Everything, for what writes the sheet down.
  const std::map<Place, Variant>& values() const { return values_; }
  const FormatTable& formats() const { return formats_; }
  const std::vector<std::vector<FormatTable::Id>>& formatIds() const { return formatIds_; }
  const std::map<Place, CellArea>& merged() const { return merged_; }
  const std::vector<std::pair<CellArea, Rule>>& rules() const { return rules_; }
  const std::map<Place, std::shared_ptr<CommentBox>>& comments() const { return comments_; }
  const std::map<Index, double>& columnWidths() const { return columnWidths_; }
  const std::map<Index, double>& rowHeights() const { return rowHeights_; }

 private:
  FormatTable::Id formatId(Index row, Index column) const;
  FormatTable::Id& formatIdRef(Index row, Index column);
  void changeLines(const CellArea& area, CellLine line, const std::function<void(LineFormat&)>& change);
  void checkNotTorn(const Deletion& deletion) const;

  std::string name_;
  std::map<Place, Variant> values_;
  FormatTable formats_;
  std::vector<std::vector<FormatTable::Id>> formatIds_;  ///< by row, then column; both end where no format is
  std::map<Place, CellArea> merged_;                     ///< by upper left cell
  std::map<Place, Place> mergedInto_;  ///< for each cell of a merged area its upper left one
  std::vector<std::pair<CellArea, Rule>> rules_;
  std::map<Place, std::shared_ptr<CommentBox>> comments_;
  std::map<Index, double> columnWidths_, rowHeights_;
};

}  // namespace zelkova
