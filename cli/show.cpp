#include "cli/show.h"

#include "cli/Columns.h"
#include "cli/numbers.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova::cli {

namespace {

class Show {
 public:
  explicit Show(int digits) : digits_(digits) {}

  std::string operator()(const Argument& argument, const Value& value) const {
    return std::visit([&](const auto& held) { return block(argument, held); }, value);
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
  for (std::size_t i = 0; i < request.values().size(); ++i) {
    const Argument& argument = request.method().arguments[i];
    if (argument.isOutput()) add(argument, request.values()[i]);
  }
  return text;
}

}  // namespace zelkova::cli
