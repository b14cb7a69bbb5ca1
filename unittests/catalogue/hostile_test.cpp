#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>
#include <span>

#include "cli/Request.h"
#include "host/Workbook.h"
#include "unittests/WithHost.h"
#include "zelkova/catalogue/Catalogue.h"
#include "zelkova/frame/NoValue.h"

namespace zelkova {
namespace {

/// Draws arguments that no reasonable caller passes: wrong sizes, unfilled arrays, huge and tiny numbers,
/// texts that are no option. Half of the draws are plain, so that a method gets past its first check and
/// fails further in; and some rounds have plain texts and arrays of one size throughout, for methods with
/// many of them.
class Hostile {
 public:
  explicit Hostile(std::uint64_t seed) : random_(seed) {}

  /// Arguments for one call: all drawn, or those of one of the `sound` requests, which may be none, with one
  /// or two of them drawn.
  std::vector<Value> arguments(const Method& method, const std::vector<std::vector<Value>>& sound) {
    nextRound();
    if (method.arguments.empty()) return {};
    const bool disturbs = !sound.empty() && !plainRound_ && chance(2);
    std::vector<Value> values =
        disturbs ? sound[random_() % sound.size()] : std::vector<Value>(method.arguments.size());
    const std::size_t first = random_() % values.size();
    const std::size_t second = random_() % values.size();
    for (std::size_t i = 0; i < values.size(); ++i) {
      // A request names no worksheet: it comes with the workbook.
      const bool isDrawn =
          !disturbs || i == first || i == second || method.arguments[i].type == ValueType::Sheet;
      if (!isDrawn) continue;
      values[i] = method.arguments[i].isInput() ? value(method.arguments[i]) : Value();
    }
    return values;
  }

 private:
  void nextRound() {
    plainRound_ = chance(4);
    rows_ = pick<Index>({1, 2, 4, 7, 12, 40});
  }

  Value value(const Argument& argument) {
    switch (argument.type) {
      case ValueType::None:
        return {};
      case ValueType::Double:
        return number();
      case ValueType::Integer:
        return static_cast<std::int16_t>(pick({0, 1, -1, 2, 3, 5, 32767, -32768}));
      case ValueType::Flag:
        return chance(2);
      case ValueType::Text:
        if (plainRound_ && !argument.choices.empty()) {
          return argument.choices[random_() % argument.choices.size()];
        }
        return text();
      case ValueType::Mixed:
        return mixed();
      case ValueType::Doubles:
        return array<double>(argument.shape, [this] { return number(); });
      case ValueType::Texts:
        return array<std::string>(argument.shape, [this] { return text(); });
      case ValueType::MixedValues:
        return array<Variant>(argument.shape, [this] { return mixed(); });
      case ValueType::Sheet:
        return chance(4) ? std::shared_ptr<Sheet>() : Workbook().firstSheet();
    }
    return {};
  }

  bool chance(std::uint64_t oneIn) { return random_() % oneIn == 0; }

  template <class T>
  T pick(std::initializer_list<T> choices) {
    return choices.begin()[random_() % choices.size()];
  }

  double number() {
    if (chance(2)) return std::round(std::ldexp(static_cast<double>(random_() % 4096), -6) * 100) / 100;
    return pick({0.0, -0.0, 1.0, -1.0, 0.5, 0.95, 2.0, 3.0, 1e-300, 5e-324, -1e300, 1e300, NoValue, 1e-10,
                 std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest(), 1e15,
                 2147483648.0, 0.9999999999999999});
  }

  std::string text() {
    if (plainRound_) return pick<const char*>({"", "1", "2", "2", "3", "0.5"});
    return pick<const char*>({"", "A", "b", "1", "2", "1.0", "Not equals", "Less than", "Greater than", " ",
                              "1e400", "-1", "nan", "\xC3\xA4", "Weibull", "999999999999999999999"});
  }

  Variant mixed() {
    if (plainRound_ && !chance(16)) return pick({0.0, 1.0, 2.0});
    return chance(2) ? Variant(number()) : chance(2) ? Variant(text()) : Variant();
  }

  template <class T, class Draw>
  Array<T> array(Shape shape, Draw draw) {
    const bool wrongShape = !plainRound_ && chance(8);
    const bool table = (shape == Shape::Table) != wrongShape;
    const Index rows = plainRound_ ? rows_ : pick<Index>({0, 1, 2, 3, 4, 7, 12, 40});
    Array<T> result = table ? Array<T>(rows, pick<Index>({1, 2, 3, 5}), T()) : Array<T>(rows);
    const bool constant = chance(4);
    const T first = draw();
    for (T& element : result.elements()) element = constant ? first : draw();
    return result;
  }

  std::mt19937_64 random_;
  bool plainRound_ = false;
  Index rows_ = 1;
};

bool isFinite(const Value& value) {
  if (const double* x = std::get_if<double>(&value)) return std::isfinite(*x);
  if (const auto* array = std::get_if<DoubleArray>(&value)) {
    return std::all_of(array->elements().begin(), array->elements().end(),
                       [](double x) { return std::isfinite(x); });
  }
  return true;
}

/// Whether a result has the dimensions and the number of slots or columns that its description promises.
bool isAsDescribed(const Argument& argument, const Value& value) {
  const auto* array = std::get_if<DoubleArray>(&value);
  if (!argument.isOutput() || array == nullptr || !array->filled()) return true;
  const bool isTable = array->dimensions() == 2;
  if (argument.shape != Shape::VectorOrTable && isTable != (argument.shape == Shape::Table)) return false;
  const Index named = isTable ? array->columns() : array->rows();
  return argument.slots.empty() || named == static_cast<Index>(argument.slots.size());
}

/// The arguments of every request to `method` that the component server is tested with.
std::vector<std::vector<Value>> soundArguments(const Class& subject, const Method& method) {
  std::ifstream file(ZELKOVA_SOURCE_DIR "/unittests/component/requests.jsonl");
  std::vector<std::vector<Value>> sound;
  for (std::string line; std::getline(file, line);) {
    const cli::Request request = cli::Request::fromJson(nlohmann::json::parse(line));
    if (request.name() != subject.name + "." + method.name) continue;
    sound.emplace_back(request.values().begin(), request.values().end());
  }
  return sound;
}

class HostileArguments : public WithHost, public ::testing::WithParamInterface<std::string> {};

// Fault: bad arguments that end in a crash, in undefined behaviour (the sanitizers watch), in an exception
// other than `Failure`, or in a result that is not finite. Every class of the catalogue joins by itself.
TEST_P(HostileArguments, EndInAResultOrAFailure) {
  const Class& functions = Catalogue::get().worksheetFunctions();
  const Class& subject = GetParam() == functions.name ? functions : *Catalogue::get().find(GetParam());
  const Method* const keeper = subject.find("PassSheet");
  Hostile hostile(20261121);
  for (const Method& method : subject.methods) {
    const std::vector<std::vector<Value>> sound = soundArguments(subject, method);
    int succeeded = 0;
    // A method whose arguments must fit each other in several ways may take long to be hit.
    // One that draws on a sheet may have a large one to draw.
    const int rounds = keeper == nullptr ? 1500 : 60;
    for (int round = 0; round < rounds || (succeeded == 0 && round < 100'000); ++round) {
      const std::shared_ptr<void> instance = subject.create();
      std::vector<Value> values = hostile.arguments(method, sound);
      const std::vector<Value> given = values;
      // What a method gives back untouched is the caller's own, of any shape.
      const auto isAsItCame = [&](std::size_t i) {
        return method.arguments[i].direction == Direction::InOut && values[i] == given[i];
      };
      try {
        if (keeper != nullptr && keeper != &method) {
          Value sheet = std::shared_ptr<Sheet>(Workbook().firstSheet());
          keeper->call(instance.get(), std::span(&sheet, 1));
        }
        const Value result = method.call(instance.get(), values);
        ++succeeded;
        EXPECT_TRUE(isFinite(result)) << method.name;
        for (std::size_t i = 0; i < values.size(); ++i) {
          EXPECT_TRUE(isFinite(values[i])) << method.name;
          EXPECT_TRUE(isAsItCame(i) || isAsDescribed(method.arguments[i], values[i]))
              << method.name << " " << method.arguments[i].name;
        }
      } catch (const Failure& failure) {
        EXPECT_NE(failure.number(), static_cast<int>(FailureNumber::Internal))
            << method.name << ": " << failure.text();
        EXPECT_FALSE(failure.text().empty()) << method.name;
      }
    }
    // Otherwise the draws test nothing but the first check.
    EXPECT_GT(succeeded, 0) << method.name << " never got past its checks";
  }
}

std::vector<std::string> everyClass() {
  std::vector<std::string> names = {Catalogue::get().worksheetFunctions().name};
  for (const Class& subject : Catalogue::get().classes()) names.push_back(subject.name);
  return names;
}

INSTANTIATE_TEST_SUITE_P(Catalogue, HostileArguments, ::testing::ValuesIn(everyClass()),
                         [](const auto& suite) { return suite.param; });

}  // namespace
}  // namespace zelkova
