#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "zelkova/frame/Host.h"

namespace zelkova {

/// Blank planning forms, drawn on a worksheet of the host: texts, formats, live formulas, drop-down lists and
/// comments. The user fills a form in and the host's formulas do the scoring; the class computes nothing. It
/// keeps the sheet that `PassSheet` hands it.
///
/// Sizes are at least 1 (failure 5); a form ends at the sheet's last column, "IV" (failure 9). Both are found
/// before anything is drawn. Without a sheet a draw is failure 91. What the host refuses, on a protected
/// sheet for one, comes back as the host's own failure.
class yTemplate {
 public:
  /// Keeps the sheet that the draw methods write to.
  void PassSheet(const std::shared_ptr<Sheet>& arg0);

  /// The cause and effect matrix: `NC` process outputs (at most 254) in columns B on, `nr` process steps or
  /// inputs in rows 4 on, and the total of each row: its scores weighted with the outputs' importance.
  void drawCNEM(std::int16_t NC, std::int16_t nr) const;

  /// The pairwise comparison of `NP` factors (at most 251): a square of verdicts, then priority, its share,
  /// rank and a bar for each factor. Verdicts weigh 9, 3, 1, 1/3 and 1/9.
  void drawPairwise(std::int16_t NP) const;

  /// Pugh's concept selection (Pugh 1981): `nr` criteria in rows 3 on, a baseline and `NC` alternatives (at
  /// most 253) in columns D on, and the net score of each alternative.
  void drawPugh(std::int16_t NC, std::int16_t nr) const;

  /// The house of quality (Hauser and Clausing 1988): `nr` voices of the customer with their importance, `NC`
  /// characteristics critical to quality (at most 123), the matrix of their relationships, totals and
  /// priorities. The customer's benchmarking at the right (`roomD`), the technical benchmarking below the
  /// matrix (`roomE`) and the roof of correlations (`roomF`) stay where their flag is true.
  void drawQFD(std::int16_t NC, std::int16_t nr, bool roomD, bool roomE, bool roomF) const;

  /// Formats the cells `selectedcells` of `nWS`: thin lines around and between them with `aborder` (without,
  /// lines stay as they are), the colour of that place in the host's palette or none below 0, Arial of
  /// `fontsize` points, and `inputtext`, a value or a formula, where that is not empty. `Halignment` is
  /// "Left", "Right" or "Center", `Valignment` "Top", "Bottom" or "Center"; any other text leaves that
  /// alignment alone.
  void SuperFormat(const std::shared_ptr<Sheet>& nWS, const std::string& selectedcells, bool aborder,
                   std::int16_t interiorColour, std::int16_t fontsize, bool aBold,
                   const std::string& Halignment, const std::string& Valignment, bool wraptext,
                   const Variant& inputtext) const;

  /// Thin lines around the cells and, with `intborder`, between them; without, none there. The colour as in
  /// `SuperFormat`.
  void Superborder(const std::shared_ptr<Sheet>& nWS, const std::string& selectedcells,
                   std::int16_t interiorColour, bool intborder) const;

  /// A comment at `tcell` in Arial 8, its box of that width and height in points.
  void AddComment(const std::shared_ptr<Sheet>& tWS, const std::string& tcell, const std::string& stext,
                  double dwidth, double dheight) const;

  /// A drop-down list of the values that are not empty, in order; the cells accept nothing else. It takes the
  /// place of the rule that stood there. Failure 1004 where no value is left.
  void AddListVad(const std::shared_ptr<Sheet>& tWS, const std::string& tcell, const Variant& v1,
                  const Variant& v2, const Variant& v3, const Variant& v4, const Variant& v5,
                  const Variant& v6, const Variant& v7, const Variant& v8, const Variant& v9,
                  const Variant& v10) const;

 private:
  /// The sheet that was passed; failure 91 where there is none.
  Sheet& target() const;

  std::shared_ptr<Sheet> sheet_;
};

}  // namespace zelkova
