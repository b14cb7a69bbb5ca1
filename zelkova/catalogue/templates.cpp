#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/templates/yTemplate.h"

namespace zelkova {

void describeTemplates(std::vector<Class>& classes) {
  using Note = ArgumentNote;

  const Note sheet("nWS", "the worksheet");
  const Note targetSheet("tWS", "the worksheet");
  const Note cells("selectedcells", "the cells, as in B2:D7");
  const Note color =
      Note("interiorColour", "the place of the cells' colour in the host's palette of 56; below 0 for none");
  const auto colorOrNone = [&] { return Note(color).optional(static_cast<std::int16_t>(-1)); };
  const auto flag = [](const char* name, const char* help, bool value) {
    return Note(name, help).optional(value);
  };
  const auto alternative = [](const char* name) {
    return Note(name, "an entry of the list, without commas; one that is empty is passed over")
        .optional(Variant());
  };

  const char* const limits =
      "Sizes are at least 1 (failure 5). The form ends at the sheet's last column, IV; a larger one is "
      "failure 9, "
      "and nothing is drawn.";
  const char* const program =
      "In a spreadsheet, pass the sheet by PassSheet first. The program draws into a file: zelkova form.";

  classes.push_back(
      Description<yTemplate>("yTemplate", "Blank planning forms, drawn on a worksheet")
          .method("PassSheet", &yTemplate::PassSheet, "Keeps the worksheet that the draw methods write to",
                  Note("arg0", "the worksheet"))
          .method("drawCNEM", &yTemplate::drawCNEM, "Cause and effect matrix",
                  Note("NC", "process outputs, 1 to 254, in columns B on"),
                  Note("nr", "process steps or inputs, in rows 4 on"))
          .note("The user names the outputs and steps, rates the outputs' importance and picks scores 1, "
                "3 or 9; the total of a row is its scores times the importance of their outputs.")
          .note("Rows that are inserted between steps need the formula of the total filled in from their "
                "neighbours, and then its second range must name the importance in row 2: pasted "
                "elsewhere it moves along, so that a total counts another row. Draw the form large "
                "enough instead; blank rows score 0.")
          .note(limits)
          .note(program)
          .method("drawPairwise", &yTemplate::drawPairwise, "Pairwise comparison of factors",
                  Note("NP", "factors, 1 to 251"))
          .note("The user names the factors in column A and picks a verdict on each pair above the "
                "diagonal; the mirrored one below follows. Much more, More, Equal, Less and Much less "
                "count 9, 3, 1, 1/3 and 1/9; a pair left blank counts nothing. Priority is the sum of a "
                "row, with its share, rank and a bar.")
          .note(limits)
          .note(program)
          .method("drawPugh", &yTemplate::drawPugh, "Pugh's selection matrix",
                  Note("NC", "alternative solutions, 1 to 253, in columns D on"),
                  Note("nr", "criteria, in rows 3 on"))
          .note("The user names criteria and alternatives, may change the criteria's priorities from 1, "
                "and picks how much better (3, 9) or worse (-3, -9) than the current solution each "
                "alternative is; the net score weights that with the priorities.")
          .note(limits)
          .note(program)
          .method(
              "drawQFD", &yTemplate::drawQFD, "Quality function deployment: the house of quality",
              Note("NC", "characteristics critical to quality (CTQ), 1 to 123, two columns each"),
              Note("nr", "voices of the customer (VOC)"),
              flag("roomD", "keep the customers' benchmarking, at the right", true),
              flag("roomE", "keep the technical benchmarking, below the priorities", true),
              flag("roomF", "keep the roof: correlations of each pair of characteristics; one alone has none",
                   true))
          .note("From top to bottom: the roof (++, +, -, --), goal, name, unit, target and difficulty "
                "rating of each characteristic, the matrix of relationships (1, 3, 9), priorities, "
                "technical benchmarking. The priority of a characteristic is the sum of its "
                "relationships times the voices' importance; the total of a voice is the sum of its "
                "relationships times its importance, so that a voice that no characteristic answers "
                "shows as 0.")
          .note("Benchmarking rooms have a place for companies and their symbols, and ratings 1 to 5 to "
                "draw profiles into.")
          .note(limits)
          .note(program)
          .method("SuperFormat", &yTemplate::SuperFormat, "Formats cells, and fills them", sheet, cells,
                  flag("aborder", "thin lines around and between the cells; without, lines stay as they are",
                       true),
                  colorOrNone(), Note("fontsize", "points").optional(static_cast<std::int16_t>(8)),
                  flag("aBold", "bold", false),
                  Note("Halignment", "any other text leaves it alone")
                      .choices({"Left", "Right", "Center"})
                      .optional(std::string("Left")),
                  Note("Valignment", "any other text leaves it alone")
                      .choices({"Top", "Bottom", "Center"})
                      .optional(std::string("Top")),
                  flag("wraptext", "break long texts into lines", true),
                  Note("inputtext", "a value, or a formula, for each cell; blank to leave what they hold")
                      .optional(Variant()))
          .method("Superborder", &yTemplate::Superborder, "Colours cells and draws thin lines around them",
                  sheet, cells, color, Note("intborder", "lines between the cells too; without, none there"))
          .method("AddComment", &yTemplate::AddComment, "Puts a comment at a cell", targetSheet,
                  Note("tcell", "the cell"), Note("stext", "the comment"),
                  Note("dwidth", "width of its box in points"),
                  Note("dheight", "height of its box in points"))
          .method("AddListVad", &yTemplate::AddListVad, "Lets cells accept the entries of a list only",
                  targetSheet, Note("tcell", "the cells"), alternative("v1"), alternative("v2"),
                  alternative("v3"), alternative("v4"), alternative("v5"), alternative("v6"),
                  alternative("v7"), alternative("v8"), alternative("v9"), alternative("v10"))
          .note("The worksheet of the program is that of the file: zelkova call with --out, or the "
                "member workbook of a request right after the one that drew it. An entry with a comma "
                "would be two.")
          .done());
}

}  // namespace zelkova
