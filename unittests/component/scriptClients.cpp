#include <cmath>
#include <fstream>
#include <iostream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Request.h"
#include "cli/Session.h"
#include "zelkova/frame/numberText.h"

/// Turns a file of requests, one a line as in a batch, into a VBScript client of the component server, and
/// compares what the client prints with the program's own answers.
///
///     zelkova-script-clients write REQUESTS SCRIPT
///     zelkova-script-clients check REQUESTS OUTPUT FOLDER
///
/// FOLDER is where the server's library lies, which `yPath.AppPath` must answer. A request that names a
/// workbook draws on a sheet that the client adds to the host's, so that clients side by side do not meet;
/// requests that follow one another with the same workbook draw on the same sheet.
namespace {

using namespace zelkova;
using namespace zelkova::cli;

/// A sheet as far as anything stands there. Cells that nobody touched are left out.
struct Drawing {
  std::map<MemorySheet::Place, Variant> values;
  std::map<MemorySheet::Place, std::string> looks;
  std::vector<double> rowHeights, columnWidths;
};

struct Case {
  Request request;
  std::vector<Value> passed;  ///< before the call
  Answer answer;
  std::optional<Drawing> drawing;
};

/// Colour, whether merged, number format, list and comment, as the script writes them.
std::string lookOf(const MemorySheet& sheet, Index row, Index column) {
  const CellFormat& format = sheet.format(row, column);
  std::string look = std::to_string(format.interior) +
                     (sheet.mergedAt(row, column) == nullptr ? ";False;" : ";True;") + format.numberFormat;
  if (const auto rule = sheet.ruleAt(row, column)) look += ";" + rule->list + ";" + rule->errorMessage;
  if (const auto box = sheet.commentAt(row, column)) {
    look +=
        ";" + box->text + ";" + box->font.name + ";" + numberText(box->width) + ";" + numberText(box->height);
  }
  return look;
}

Drawing drawingOn(const MemorySheet& sheet) {
  Index rows = 0, columns = 0;
  const auto reach = [&](Index row, Index column) {
    rows = std::max(rows, row);
    columns = std::max(columns, column);
  };
  for (const auto& [place, value] : sheet.values()) reach(place.first, place.second);
  for (const auto& [place, area] : sheet.merged()) reach(area.lastRow, area.lastColumn);
  for (const auto& [area, rule] : sheet.rules()) reach(area.lastRow, area.lastColumn);
  for (const auto& [place, box] : sheet.comments()) reach(place.first, place.second);

  Drawing drawing{sheet.values(), {}, {}, {}};
  const std::string untouched = lookOf(MemorySheet("untouched"), 1, 1);
  for (Index row = 1; row <= rows; ++row) {
    drawing.rowHeights.push_back(sheet.rowHeight(row));
    for (Index column = 1; column <= columns; ++column) {
      const std::string look = lookOf(sheet, row, column);
      if (look != untouched) drawing.looks.emplace(MemorySheet::Place(row, column), look);
    }
  }
  for (Index column = 1; column <= columns; ++column) {
    drawing.columnWidths.push_back(sheet.columnWidth(column));
  }
  return drawing;
}

std::vector<Case> readCases(const std::string& path) {
  std::vector<Case> cases;
  std::ifstream file(path);
  Session session;
  for (std::string line; std::getline(file, line);) {
    Request request = Request::fromJson(parseJson(line, path));
    request.checkComplete();
    const std::vector<Value> passed(request.values().begin(), request.values().end());
    Answer answer = session.run(request);
    std::optional<Drawing> drawing;
    if (request.workbook()) drawing = drawingOn(*session.workbook().firstSheet());
    cases.push_back({std::move(request), passed, std::move(answer), std::move(drawing)});
  }
  return cases;
}

// The script.

std::string literal(double number) {
  std::ostringstream text;
  text.precision(17);
  text << number;
  return "CDbl(" + text.str() + ")";
}
std::string literal(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) result += c == '"' ? "\"\"" : std::string(1, c);
  return result + '"';
}
std::string literal(bool flag) { return flag ? "True" : "False"; }
std::string literal(std::int16_t number) { return "CInt(" + std::to_string(number) + ")"; }
std::string literal(const Variant& value) {
  if (value.isNumber()) return literal(value.toNumber());
  if (value.isText()) return literal(value.toText());
  return value.isFlag() ? literal(value.toFlag()) : "Empty";
}

template <class T>
void assign(std::ostream& script, const std::string& variable, const Array<T>& array) {
  if (!array.filled()) return;
  // A script's arrays begin at 0.
  const bool isTable = array.dimensions() == 2;
  script << "  ReDim " << variable << "(" << array.rows() - 1;
  if (isTable) script << ", " << array.columns() - 1;
  script << ")\n";
  for (Index k = 0; k < array.size(); ++k) {
    script << "  " << variable << "(" << k % array.rows();
    if (isTable) script << ", " << k / array.rows();
    script << ") = " << literal(array.elements()[static_cast<std::size_t>(k)]) << "\n";
  }
}
void assign(std::ostream&, const std::string&, std::monostate) {}
void assign(std::ostream&, const std::string&, const std::shared_ptr<Sheet>&) {}
template <class T>
void assign(std::ostream& script, const std::string& variable, const T& scalar) {
  script << "  " << variable << " = " << literal(scalar) << "\n";
}

constexpr const char* scriptHead = R"(Option Explicit
Dim sheet
Sub Tell(number, name, place, value)
  WScript.Echo number & "|" & name & "|" & place & "|" & TypeName(value) & "|" & value
End Sub
Sub TellVector(number, name, values)
  Dim i
  For i = LBound(values) To UBound(values)
    Tell number, name, CStr(i), values(i)
  Next
End Sub
Sub TellTable(number, name, values)
  Dim i, j
  For i = LBound(values, 1) To UBound(values, 1)
    For j = LBound(values, 2) To UBound(values, 2)
      Tell number, name, i & "," & j, values(i, j)
    Next
  Next
End Sub
Function Look(cell)
  Dim rule, comment
  Look = cell.Interior.ColorIndex & ";" & cell.MergeCells & ";" & cell.NumberFormat
  On Error Resume Next
  Set rule = cell.Validation
  rule = ";" & rule.Formula1 & ";" & rule.ErrorMessage
  If Err.Number = 0 Then Look = Look & rule
  On Error GoTo 0
  Set comment = cell.Comment
  If comment Is Nothing Then Exit Function
  Look = Look & ";" & comment.Text & ";" & comment.Shape.TextFrame.Characters.Font.Name & ";" & _
    comment.Shape.Width & ";" & comment.Shape.Height
End Function
Sub TellSheet(number, rows, columns)
  Dim row, column, cell, held, shown
  For row = 1 To rows
    Tell number, "row", row, sheet.Rows(row & ":" & row).RowHeight
    For column = 1 To columns
      If row = 1 Then Tell number, "column", column, sheet.Cells(1, column).ColumnWidth
      Set cell = sheet.Cells(row, column)
      held = cell.Value
      If Not IsEmpty(held) Then Tell number, "cell", row & "," & column, held
      shown = Look(cell)
      If shown <> "-4142;False;General" Then Tell number, "look", row & "," & column, shown
    Next
  Next
End Sub
)";

int dimensions(const Value& value) {
  return std::visit(
      [](const auto& held) {
        if constexpr (requires { held.dimensions(); }) return held.filled() ? held.dimensions() : -1;
        return 0;
      },
      value);
}

void tell(std::ostream& script, std::size_t number, const std::string& name, const std::string& variable,
          const Value& expected) {
  const char* how[] = {"Tell", "TellVector", "TellTable"};
  const int shape = dimensions(expected);
  if (shape < 0) {
    script << "  Tell " << number << ", \"" << name << "\", \"\", IsEmpty(" << variable << ")\n";
  } else {
    script << "  " << how[shape] << " " << number << ", \"" << name << "\", " << (shape == 0 ? "\"\", " : "")
           << variable << "\n";
  }
}

void write(const std::vector<Case>& cases, std::ostream& script) {
  script << scriptHead;
  std::optional<std::string> workbook;
  for (std::size_t n = 0; n < cases.size(); ++n) {
    const Case& c = cases[n];
    const Method& method = c.request.method();
    if (c.request.workbook() && c.request.workbook() != workbook) {
      workbook = c.request.workbook();
      script << "Set sheet = CreateObject(\"Excel.Application\").Worksheets.Add\n";
    }
    script << "Sub Call" << n << "\n  On Error Resume Next\n  Dim object, answer, number\n";
    std::string list;
    for (std::size_t i = 0; i < method.arguments.size(); ++i) {
      const std::string variable = "a" + std::to_string(i);
      script << "  Dim " << variable << "\n";
      const Argument& argument = method.arguments[i];
      const bool isLeftOut = typeOf(c.passed[i]) == ValueType::None && argument.optional;
      std::visit([&](const auto& held) { assign(script, variable, held); },
                 isLeftOut ? argument.defaultValue : c.passed[i]);
      if (argument.type == ValueType::Sheet && c.request.workbook()) {
        script << "  Set " << variable << " = sheet\n";
      }
      list += (i == 0 ? "" : ", ") + variable;
    }
    script << "  Set object = CreateObject(\"zelkova." << c.request.target().name << "\")\n";
    if (c.request.workbook() && method.name != "PassSheet") script << "  object.PassSheet sheet\n";
    const bool answers = method.result != ValueType::None;
    script << (answers ? "  answer = object." : "  object.") << method.name
           << (answers ? "(" + list + ")" : " " + list) << "\n  number = Err.Number\n"
           << "  If number <> 0 Then WScript.Echo \"" << n
           << "|failure||\" & Err.Source & \"|\" & number & \" \" & Err.Description\n  Err.Clear\n";
    for (std::size_t i = 0; i < method.arguments.size(); ++i) {
      if (!method.arguments[i].isOutput()) continue;
      tell(script, n, method.arguments[i].name, "a" + std::to_string(i), c.request.values()[i]);
    }
    if (answers && !c.answer.failure) tell(script, n, "result", "answer", c.answer.result);
    if (c.drawing) {
      script << "  On Error GoTo 0\n  TellSheet " << n << ", " << c.drawing->rowHeights.size() << ", "
             << c.drawing->columnWidths.size() << "\n";
    }
    script << "End Sub\nCall" << n << "\n";
  }
}

// The comparison.

/// What the script printed: by call, output and place, its type and its value.
using Printed = std::map<std::string, std::pair<std::string, std::string>>;

Printed readOutput(const std::string& path) {
  Printed printed;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    while (!line.empty() && line.back() == '\r') line.pop_back();
    std::size_t cuts[4] = {}, from = 0;
    for (std::size_t& cut : cuts) from = (cut = line.find('|', from)) + 1;
    printed[line.substr(0, cuts[2])] = {line.substr(cuts[2] + 1, cuts[3] - cuts[2] - 1),
                                        line.substr(cuts[3] + 1)};
  }
  return printed;
}

class Comparison {
 public:
  Comparison(Printed printed, std::string folder)
      : printed_(std::move(printed)), folder_(std::move(folder)) {}

  void compare(std::size_t number, const Case& c) {
    case_ = std::to_string(number);
    name_ = c.request.name();
    failed_ = c.answer.failure.has_value();
    if (c.answer.failure) {
      expectText("failure|", "zelkova." + c.request.target().name,
                 std::to_string(c.answer.failure->number()) + " " + c.answer.failure->text());
    }
    for (std::size_t i = 0; i < c.request.values().size(); ++i) {
      const Argument& argument = c.request.method().arguments[i];
      if (argument.isOutput()) compare(argument.name, c.request.values()[i]);
    }
    if (!c.answer.failure && c.request.method().result != ValueType::None) compare("result", c.answer.result);
    if (c.drawing) compare(*c.drawing);
  }

  /// Lines that no output accounts for are faults too: a failure where none was expected, say.
  int faults() {
    for (const auto& [key, value] : printed_) fault(key + ": unexpected, " + value.second);
    return faults_;
  }

 private:
  void fault(const std::string& what) {
    std::cerr << what << "\n";
    ++faults_;
  }

  /// Characters beyond ASCII as one mark: in what alphabet the script prints them is up to the console.
  static std::string inAscii(const std::string& text) {
    std::string result;
    for (const char c : text) {
      const bool isPlain = static_cast<unsigned char>(c) < 0x80;
      if (isPlain || !result.ends_with('?')) result += isPlain ? c : '?';
    }
    return result;
  }

  std::pair<std::string, std::string> take(const std::string& place) {
    const auto found = printed_.find(case_ + "|" + place);
    if (found == printed_.end()) return {"nothing", ""};
    const auto value = found->second;
    printed_.erase(found);
    return value;
  }

  void expectText(const std::string& place, const std::string& type, const std::string& value) {
    const auto [actualType, actual] = take(place);
    if (actualType != type || inAscii(actual) != inAscii(value)) {
      fault(name_ + ", " + place + ": " + type + " " + value + " expected, " + actualType + " " + actual +
            " printed");
    }
  }

  /// How far two systems' results may lie apart. Where a search by differences ends is up to the last bits of
  /// their elementary functions.
  double tolerance() const {
    const bool searches = name_.starts_with("yReliability.") || name_.starts_with("yProbability.");
    return searches ? 1e-5 : 1e-12;
  }

  /// Twelve digits as a rule, and as much in absolute terms where a result is 0 but for rounding.
  void expectNumber(const std::string& place, double expected) {
    const auto [type, text] = take(place);
    // A variable that the call did not come to is as the script has made it.
    if (failed_ && type == "Empty" && expected == 0) return;
    const std::optional<double> actual = numberOf(text);
    if (type != "Double" || !actual ||
        std::abs(*actual - expected) > tolerance() * std::max(std::abs(expected), 1e-3)) {
      fault(name_ + ", " + place + ": " + numberText(expected) + " expected, " + type + " " + text +
            " printed");
    }
  }

  void expect(const std::string& place, double value) { expectNumber(place, value); }
  void expect(const std::string& place, const std::string& value) {
    expectText(place, "String", name_ == "yPath.AppPath" ? folder_ : value);
  }
  void expect(const std::string& place, bool value) {
    expectText(place, "Boolean", value ? "True" : "False");
  }
  void expect(const std::string& place, std::int16_t value) {
    expectText(place, "Integer", std::to_string(value));
  }
  void expect(const std::string& place, const Variant& value) {
    if (value.isNumber()) return expect(place, value.toNumber());
    if (value.isText()) return expect(place, value.toText());
    if (value.isFlag()) return expect(place, value.toFlag());
    expectText(place, "Empty", "");
  }
  void expect(const std::string&, std::monostate) {}
  void expect(const std::string&, const std::shared_ptr<Sheet>&) {}

  void compare(const Drawing& drawing) {
    const auto at = [](const MemorySheet::Place& place) {
      return "|" + std::to_string(place.first) + "," + std::to_string(place.second);
    };
    for (const auto& [place, value] : drawing.values) expect("cell" + at(place), value);
    for (const auto& [place, look] : drawing.looks) expectText("look" + at(place), "String", look);
    const auto compareSizes = [this](const std::string& what, const std::vector<double>& sizes) {
      for (std::size_t i = 0; i < sizes.size(); ++i) expect(what + std::to_string(i + 1), sizes[i]);
    };
    compareSizes("row|", drawing.rowHeights);
    compareSizes("column|", drawing.columnWidths);
  }

  void compare(const std::string& output, const Value& expected) {
    std::visit(
        [&](const auto& held) {
          if constexpr (requires { held.dimensions(); }) {
            compareArray(output + "|", held);
          } else {
            expect(output + "|", held);
          }
        },
        expected);
  }

  template <class T>
  void compareArray(const std::string& output, const Array<T>& expected) {
    if (!expected.filled()) return expectText(output, "Boolean", "True");
    for (Index k = 0; k < expected.size(); ++k) {
      std::string place = output + std::to_string(k % expected.rows() + 1);
      if (expected.dimensions() == 2) place += "," + std::to_string(k / expected.rows() + 1);
      expect(place, expected.elements()[static_cast<std::size_t>(k)]);
    }
  }

  Printed printed_;
  bool failed_ = false;
  std::string folder_, case_, name_;
  int faults_ = 0;
};

int check(const std::vector<Case>& cases, const std::string& output, const std::string& folder) {
  Comparison comparison(readOutput(output), folder);
  std::set<std::string> called;
  for (std::size_t n = 0; n < cases.size(); ++n) {
    comparison.compare(n, cases[n]);
    if (!cases[n].answer.failure) called.insert(cases[n].request.target().name);
  }
  int faults = comparison.faults();
  for (const Class& c : Catalogue::get().classes()) {
    if (called.contains(c.name)) continue;
    std::cerr << c.name << " has no script client\n";
    ++faults;
  }
  std::cout << cases.size() << " calls from a script, " << faults << " faults\n";
  return faults == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() == 3 && arguments[0] == "write") {
    std::ofstream script(arguments[2], std::ios::binary);
    write(readCases(arguments[1]), script);
    script.close();
    return script.good() ? 0 : 1;
  }
  if (arguments.size() == 4 && arguments[0] == "check") {
    return check(readCases(arguments[1]), arguments[2], arguments[3]);
  }
  std::cerr << "write REQUESTS SCRIPT, or check REQUESTS OUTPUT FOLDER\n";
  return 2;
}
