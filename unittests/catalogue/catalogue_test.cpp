#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <set>

#include "cli/describe.h"
#include "unittests/support.h"
#include "zelkova/catalogue/Catalogue.h"
#include "zelkova/catalogue/describe.h"
#include "zelkova/frame/slots.h"

namespace zelkova {
namespace {

ZELKOVA_SLOTS(Pair, First, Second);

/// Has an argument of every type and direction.
class Probe {
 public:
  double Everything(double x, std::int16_t whole, const std::string& text, const Variant& mixed,
                    const DoubleArray& doubles, const StringArray& texts, const VariantArray& mixedValues,
                    std::int16_t& order, DoubleArray& terms, double& scalar, std::string& errorCode,
                    DoubleArray& pair, bool flag) const {
    scalar = x + whole + (flag ? 1 : 0) + mixed.toNumber();
    errorCode = text + texts(1);
    order = static_cast<std::int16_t>(order + 1);
    terms(1) += doubles(1, 1) + mixedValues(2).toNumber();
    DoubleArray result(Pair::size);
    result(Pair::Second) = terms(1);
    pair = result;
    return 42;
  }

  double Mixed(double x, bool flag) { return flag ? x : 0; }

  void Exhaust(double& result, DoubleArray& never) {
    static_cast<void>(never);
    result = 1;
    throw std::bad_alloc();
  }
};

Class probe() {
  using Note = ArgumentNote;
  return Description<Probe>("Probe", "A class for tests")
      .method("Everything", &Probe::Everything, "Everything", Note("x", ""), Note("whole", ""),
              Note("text", ""), Note("mixed", ""), Note("doubles", "").table(), Note("texts", ""),
              Note("mixedValues", "").vectorOrTable(), Note("order", "").inOut(), Note("terms", "").inOut(),
              Note("scalar", ""), Note("errorCode", ""), Note("pair", "").slots(Pair::names),
              Note("flag", "").optional(true))
      .method("Exhaust", &Probe::Exhaust, "Runs out of memory", Note("result", ""), Note("never", ""))
      .done();
}

// Fault: a type or direction that differs from the signature, or names of slots that differ from the code's.
TEST(Description, TakesTypesAndDirectionsFromTheSignature) {
  const Class subject = probe();
  const auto& arguments = subject.find("Everything")->arguments;
  const ValueType types[] = {
      ValueType::Double, ValueType::Integer,     ValueType::Text,    ValueType::Mixed,   ValueType::Doubles,
      ValueType::Texts,  ValueType::MixedValues, ValueType::Integer, ValueType::Doubles, ValueType::Double,
      ValueType::Text,   ValueType::Doubles,     ValueType::Flag};
  ASSERT_EQ(arguments.size(), std::size(types));
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    EXPECT_EQ(arguments[i].type, types[i]) << i;
    const bool isIn = i < 7 || i == 12;
    EXPECT_EQ(arguments[i].direction, isIn ? Direction::In : i < 9 ? Direction::InOut : Direction::Out) << i;
  }
  EXPECT_EQ(arguments[11].slots, (std::vector<std::string>{"First", "Second"}));
  EXPECT_EQ(subject.find("Everything")->result, ValueType::Double);
  EXPECT_EQ(subject.find("everything"), nullptr);
  EXPECT_FALSE(subject.binds);
}

// Fault: an argument that reaches the wrong parameter, a default that is not filled in, an output that stays
// behind.
TEST(Description, CallsThroughValues) {
  const Class subject = probe();
  const auto instance = subject.create();
  const Method& method = *subject.find("Everything");
  std::vector<Value> values = {0.5,
                               std::int16_t{3},
                               std::string("ab"),
                               Variant("1.25"),
                               DoubleArray::table({{10}}),
                               StringArray{"c"},
                               VariantArray{Variant(), Variant(7.0)},
                               std::int16_t{8},
                               DoubleArray{100},
                               {},
                               {},
                               {},
                               {}};  // the flag's default is true
  EXPECT_EQ(method.call(instance.get(), values), Value(42.0));
  EXPECT_EQ(values[7], Value(std::int16_t{9}));
  EXPECT_EQ(values[8], Value(DoubleArray{117}));
  EXPECT_EQ(values[9], Value(5.75));
  EXPECT_EQ(values[10], Value(std::string("abc")));
  EXPECT_EQ(values[11], Value(DoubleArray{0, 117}));

  std::vector<Value> missing(13);
  EXPECT_EQ(failureNumber([&] { method.call(instance.get(), missing); }), 5);
  std::vector<Value> wrongType(13, Value(std::string("text")));
  EXPECT_EQ(failureNumber([&] { method.call(instance.get(), wrongType); }), 13);

  // A subscript out of range names the array that was left out, and says nothing of one that is too short.
  const auto fails = [&](Value doubles, Value terms) {
    std::vector<Value> some = values;
    some[4] = std::move(doubles);
    some[8] = std::move(terms);
    return failureText([&] { method.call(instance.get(), some); });
  };
  EXPECT_EQ(fails({}, DoubleArray{1}), "Subscript out of range: nothing was given for doubles");
  EXPECT_EQ(fails({}, {}),
            "Subscript out of range: nothing was given for doubles, terms; at least one of them is needed");
  EXPECT_EQ(fails(DoubleArray{10}, DoubleArray{1}), "Subscript out of range");

  // An output that a failed method never reached is as it came, and one that it had assigned by then is kept.
  std::vector<Value> two = {{}, DoubleArray{5}};
  EXPECT_EQ(failureNumber([&] { subject.find("Exhaust")->call(instance.get(), two); }), 7);
  EXPECT_EQ(two[0], Value(1.0));
  EXPECT_EQ(two[1], Value(DoubleArray{5}));
}

// Fault: a description that contradicts the signature and is found out by a user.
TEST(Description, RefusesContradictions) {
  using Note = ArgumentNote;
  const auto describe = [](const Note& first, const Note& second) {
    Description<Probe>("Probe", "").method("Mixed", &Probe::Mixed, "", first, second);
  };
  EXPECT_NO_THROW(describe(Note("x", ""), Note("flag", "").optional(false)));
  EXPECT_THROW(describe(Note("x", ""), Note("flag", "").optional(0.0)), std::logic_error);
  EXPECT_THROW(describe(Note("x", "").optional(1.0), Note("flag", "")), std::logic_error);
  EXPECT_THROW(describe(Note("x", "").inOut(), Note("flag", "")), std::logic_error);
}

// Fault: an entry without help, doubled names, or names of slots that repeat, all of which a user would
// stumble on.
TEST(Catalogue, IsCompleteAndUnambiguous) {
  std::set<std::string> classes;
  for (const Class& subject : Catalogue::get().classes()) {
    EXPECT_TRUE(classes.insert(subject.name).second) << subject.name;
    EXPECT_FALSE(subject.help.empty()) << subject.name;
    EXPECT_FALSE(subject.methods.empty()) << subject.name;
    std::set<std::string> methods;
    for (const Method& method : subject.methods) {
      EXPECT_TRUE(methods.insert(method.name).second) << method.name;
      EXPECT_FALSE(method.help.empty() || method.help.ends_with('.')) << method.name;
      std::set<std::string> arguments;
      for (const Argument& argument : method.arguments) {
        EXPECT_TRUE(arguments.insert(argument.name).second) << method.name << " " << argument.name;
        EXPECT_FALSE(argument.help.empty()) << method.name << " " << argument.name;
        const std::set<std::string> slots(argument.slots.begin(), argument.slots.end());
        EXPECT_EQ(slots.size(), argument.slots.size()) << method.name << " " << argument.name;
      }
    }
  }
}

// Fault: the text of a refusal that is asked for as an input, or that must be passed in one class and not in
// another.
TEST(Catalogue, TellsRefusalsInOneForm) {
  int methods = 0;
  for (const Class& subject : Catalogue::get().classes()) {
    for (const Method& method : subject.methods) {
      const std::optional<std::size_t> at = method.find("ErrorCode");
      if (!at) continue;
      ++methods;
      EXPECT_EQ(method.arguments[*at].direction, Direction::Out) << method.name;
      const bool mayBeLeftOut = method.name == "ChisquareOutput" || method.name == "GageRunOutput";
      EXPECT_EQ(method.arguments[*at].optional, mayBeLeftOut) << method.name;
    }
  }
  EXPECT_GE(methods, 4);
}

std::string contents(const std::filesystem::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Fault: reference pages that tell something other than the program does. `make docs` writes them anew.
TEST(Reference, IsFresh) {
  const std::filesystem::path folder = ZELKOVA_SOURCE_DIR "/docs/reference";
  std::set<std::string> pages = {"README.md"};
  EXPECT_EQ(contents(folder / "README.md"), cli::listMarkdown());
  const auto check = [&](const Class& subject) {
    pages.insert(subject.name + ".md");
    EXPECT_EQ(contents(folder / (subject.name + ".md")), cli::describeMarkdown(subject)) << subject.name;
  };
  for (const Class& subject : Catalogue::get().classes()) check(subject);
  check(Catalogue::get().worksheetFunctions());
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    EXPECT_TRUE(pages.contains(entry.path().filename().string())) << entry.path() << " is no class's page";
  }
}

// Fault: a class that a reader of the README never hears of.
TEST(Reference, ReadmeNamesEveryClass) {
  const std::string readme = contents(ZELKOVA_SOURCE_DIR "/README.md");
  for (const Class& subject : Catalogue::get().classes()) {
    EXPECT_NE(readme.find("`" + subject.name + "`"), std::string::npos) << subject.name;
  }
}

}  // namespace
}  // namespace zelkova
