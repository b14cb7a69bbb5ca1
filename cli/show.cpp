#include "cli/show.h"

#include <span>
#include <string>
#include <vector>

#include "cli/Columns.h"
#include "cli/numbers.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova::cli {

namespace {

/// An output of a call, as it came back.
struct Output {
  const Argument* argument;
  const Value* value;
};

/// The size of an array; no rows where it was not filled, and no columns for anything but an array.
struct Extent {
  Index rows = 0;
  Index columns = 0;
};

Extent extentOf(const Output& output) {
  return std::visit(
      [](const auto& held) -> Extent {
        if constexpr (requires { held.dimensions(); }) {
          return {held.filled() ? held.rows() : 0, held.dimensions() == 2 ? held.columns() : 1};
        } else {
          return {};
        }
      },
      *output.value);
}

/// The rows of an array whose elements have no names of their own; 0 for anything else.
Index parallelRows(const Output& output) {
  return output.argument->slots.empty() ? extentOf(output).rows : 0;
}

bool isUnfilled(const Output& output) {
  const Extent extent = extentOf(output);
  return extent.columns > 0 && extent.rows == 0;
}

/// Outputs that are shown together, and those between them that were not filled.
struct Group {
  std::vector<Output> parallel;
  std::vector<Output> unfilled;
};

/// The outputs from `first` on that have as many rows as that one and fit into a line.
Group groupFrom(std::span<const Output> outputs) {
  constexpr Index widest = 12;
  const Index rows = parallelRows(outputs.front());
  Group group{{outputs.front()}, {}};
  if (rows < 2) return group;
  Index columns = extentOf(outputs.front()).columns;
  std::vector<Output> skipped;
  for (const Output& output : outputs.subspan(1)) {
    if (isUnfilled(output)) {
      skipped.push_back(output);
      continue;
    }
    columns += extentOf(output).columns;
    if (parallelRows(output) != rows || columns > widest) break;
    group.parallel.push_back(output);
    group.unfilled.insert(group.unfilled.end(), skipped.begin(), skipped.end());
    skipped.clear();
  }
  return group;
}

class Show {
 public:
  explicit Show(int digits) : digits_(digits) {}

  std::string operator()(const Argument& argument, const Value& value) const {
    return std::visit([&](const auto& held) { return block(argument, held); }, value);
  }

  /// Outputs that belong together row by row, such as the points and the lines of a chart, in one table.
  std::string sideBySide(std::span<const Output> outputs) const {
    std::vector<std::vector<std::string>> lines(static_cast<std::size_t>(parallelRows(outputs.front())) + 1);
    std::vector<Columns::Align> alignment{Columns::Align::Right};
    lines.front().emplace_back();
    for (std::size_t i = 1; i < lines.size(); ++i) lines[i].push_back("  " + std::to_string(i));
    for (const Output& output : outputs) {
      std::visit([&](const auto& held) { appendColumns(*output.argument, held, lines, alignment); },
                 *output.value);
    }
    Columns columns(alignment);
    for (std::vector<std::string>& line : lines) columns.add(std::move(line));
    return columns.text();
  }

 private:
  std::string shown(double x) const {
    if (x == NoValue) return "-";
    return digits_ == allDigits ? shortestNumber(x) : roundedNumber(x, digits_);
  }
  std::string shown(const std::string& text) const { return text; }
  std::string shown(std::int16_t x) const { return std::to_string(x); }
  std::string shown(bool x) const { return x ? "true" : "false"; }
  std::string shown(const Variant& value) const {
    return value.isNumber() ? shown(value.toNumber()) : value.toText();
  }
  std::string shown(std::monostate) const { return "-"; }
  std::string shown(const std::shared_ptr<Sheet>& sheet) const {
    return sheet == nullptr ? "-" : sheet->name();
  }

  template <class T>
  std::string block(const Argument& argument, const T& scalar) const {
    return argument.name + "  " + shown(scalar) + "\n";
  }

  template <class T>
  std::string block(const Argument& argument, const Array<T>& array) const {
    if (!array.filled()) return argument.name + "  (not filled)\n";
    return argument.name + "\n" +
           (array.dimensions() == 1 ? vector(argument, array) : table(argument, array));
  }

  template <class T>
  void appendColumns(const Argument&, const T&, std::vector<std::vector<std::string>>&,
                     std::vector<Columns::Align>&) const {}

  template <class T>
  void appendColumns(const Argument& argument, const Array<T>& array,
                     std::vector<std::vector<std::string>>& lines,
                     std::vector<Columns::Align>& alignment) const {
    const bool isTable = array.dimensions() == 2;
    const Index columns = isTable ? array.columns() : 1;
    for (Index j = 1; j <= columns; ++j) {
      alignment.push_back(std::is_same_v<T, double> ? Columns::Align::Right : Columns::Align::Left);
      lines.front().push_back(columns == 1 ? argument.name : argument.name + " " + std::to_string(j));
      for (Index i = 1; i <= array.rows(); ++i) {
        lines[static_cast<std::size_t>(i)].push_back(shown(isTable ? array(i, j) : array(i)));
      }
    }
  }

  template <class T>
  std::string vector(const Argument& argument, const Array<T>& array) const {
    Columns columns({Columns::Align::Right, Columns::Align::Left});
    for (Index i = 1; i <= array.rows(); ++i) {
      const bool named = static_cast<std::size_t>(i) <= argument.slots.size();
      std::vector<std::string> line = {"  " + std::to_string(i)};
      if (named) line.push_back(argument.slots[static_cast<std::size_t>(i - 1)]);
      line.push_back(shown(array(i)));
      columns.add(std::move(line));
    }
    return columns.text();
  }

  template <class T>
  std::string table(const Argument& argument, const Array<T>& array) const {
    const auto right = std::is_same_v<T, double> ? Columns::Align::Right : Columns::Align::Left;
    std::vector<Columns::Align> alignment(static_cast<std::size_t>(array.columns()) + 1, right);
    alignment.front() = Columns::Align::Right;
    Columns columns(alignment);
    std::vector<std::string> head = {""};
    for (Index j = 1; j <= array.columns(); ++j) {
      const bool named = static_cast<std::size_t>(j) <= argument.slots.size();
      head.push_back(named ? argument.slots[static_cast<std::size_t>(j - 1)] : std::to_string(j));
    }
    columns.add(std::move(head));
    for (Index i = 1; i <= array.rows(); ++i) {
      std::vector<std::string> line = {"  " + std::to_string(i)};
      for (Index j = 1; j <= array.columns(); ++j) line.push_back(shown(array(i, j)));
      columns.add(std::move(line));
    }
    return columns.text();
  }

  int digits_;
};

}  // namespace

std::string showAnswer(const Request& request, const Answer& answer, int digits) {
  const Show show(digits);
  std::string text;
  const auto add = [&](const Argument& argument, const Value& value) {
    if (!text.empty()) text += "\n";
    text += show(argument, value);
  };
  for (const std::string& message : answer.messages) text += "Message: " + message + "\n";
  if (request.method().result != ValueType::None) {
    Argument result;
    result.name = request.method().name;
    add(result, answer.result);
  }
  std::vector<Output> outputs;
  for (std::size_t i = 0; i < request.values().size(); ++i) {
    const Argument& argument = request.method().arguments[i];
    if (argument.isOutput()) outputs.push_back({&argument, &request.values()[i]});
  }
  for (std::size_t i = 0; i < outputs.size();) {
    const Group group = groupFrom(std::span<const Output>(outputs).subspan(i));
    if (group.parallel.size() == 1) {
      add(*outputs[i].argument, *outputs[i].value);
    } else {
      if (!text.empty()) text += "\n";
      text += show.sideBySide(group.parallel);
      for (const Output& output : group.unfilled) add(*output.argument, *output.value);
    }
    i += group.parallel.size() + group.unfilled.size();
  }
  return text;
}

}  // namespace zelkova::cli
