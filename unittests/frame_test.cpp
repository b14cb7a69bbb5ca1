#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <locale>

#include "host/EmbeddedHost.h"
#include "unittests/support.h"
#include "zelkova/frame/Array.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/RunningObjects.h"
#include "zelkova/frame/Variant.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {
namespace {

// Fault: an access past a bound, or to an array that was never filled, that reads memory instead of
// raising 9.
TEST(Array, ChecksEveryBound) {
  const DoubleArray never;
  const DoubleArray vector{1, 2, 3};
  const DoubleArray table = DoubleArray::table({{1, 2, 3}, {4, 5, 6}});
  EXPECT_EQ(table(2, 1), 4);
  EXPECT_EQ(table.column(3)[1], 6);
  for (const auto& call : std::initializer_list<std::function<void()>>{
           [&] { never(1); }, [&] { never.rows(); }, [&] { vector(0); }, [&] { vector(4); },
           [&] { vector(1, 1); }, [&] { vector.columns(); }, [&] { table(3, 1); }, [&] { table(1, 0); },
           [&] { table(1); }, [&] { table.vector(); }, [&] { table.column(4); },
           [] { DoubleArray bad(-1); }}) {
    EXPECT_EQ(failureNumber(call), 9);
  }
  EXPECT_FALSE(DoubleArray(0).filled());

  DoubleArray given{1, 2};
  const DoubleArray taken = std::move(given);
  EXPECT_EQ(failureNumber([&] { given(1); }), 9);  // NOLINT(bugprone-use-after-move): that is the question
  EXPECT_EQ(taken(2), 2);
}

// Fault: an infinity or a not-a-number that passes, or the wrong classic number for it.
TEST(CheckedArithmetic, RaisesTheClassicNumbers) {
  const double huge = std::numeric_limits<double>::max();
  EXPECT_EQ(failureNumber([&] { checked::quotient(1, 0); }), 11);
  EXPECT_EQ(failureNumber([&] { checked::quotient(0, 0); }), 11);
  EXPECT_EQ(failureNumber([&] { checked::quotient(huge, 0.5); }), 6);
  const double infinite = huge * 10;
  EXPECT_EQ(failureNumber([&] { checked::quotient(1, infinite); }), 6);
  EXPECT_EQ(failureNumber([&] { checked::exp(-infinite); }), 6);
  EXPECT_EQ(failureNumber([&] { checked::power(infinite, -1); }), 6);
  EXPECT_EQ(failureNumber([&] { checked::root(-1); }), 5);
  EXPECT_EQ(failureNumber([&] { checked::log(0); }), 5);
  EXPECT_EQ(failureNumber([&] { checked::exp(710); }), 6);
  EXPECT_EQ(failureNumber([&] { checked::power(0, -1); }), 5);
  EXPECT_EQ(failureNumber([&] { checked::power(-8, 1.0 / 3); }), 5);
  EXPECT_EQ(failureNumber([&] { checked::leaving(DoubleArray{1, infinite}); }), 6);
  EXPECT_EQ(failureNumber([&] { checked::leaving(DoubleArray{1, std::nan("")}); }), 6);
  EXPECT_EQ(failureNumber([&] { checked::leaving(DoubleArray{huge, huge, NoValue}, DoubleArray()); }), 0);
}

// Fault: rounding a half away from zero, or wrapping where the integer type is too small.
TEST(RealToInteger, RoundsHalfToEvenAndRefusesWhatDoesNotFit) {
  EXPECT_EQ(toInteger<int>(2.5), 2);
  EXPECT_EQ(toInteger<int>(3.5), 4);
  EXPECT_EQ(toInteger<int>(-2.5), -2);
  EXPECT_EQ(toInteger<std::int16_t>(32767.4), 32767);
  EXPECT_EQ(toInteger<std::int16_t>(-32768.5), -32768);
  EXPECT_EQ(failureNumber([] { toInteger<std::int16_t>(32767.5); }), 6);
  EXPECT_EQ(failureNumber([] { toInteger<std::int64_t>(9.3e18); }), 6);
  EXPECT_EQ(failureNumber([] { toInteger<int>(std::nan("")); }), 6);
}

struct CommaForPoint : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

// Fault: a text that is taken for a number, or a number whose text depends on the locale. The texts of
// numbers are those of C's "%.15G" (ISO C 7.21.6.1), worked out by hand.
TEST(NumberText, IsOnePairInEveryLocale) {
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaForPoint));
  const std::pair<double, const char*> shown[] = {{0.1, "0.1"},
                                                  {-0.0, "0"},
                                                  {1234, "1234"},
                                                  {1.0 / 3, "0.333333333333333"},
                                                  {1e-5, "1E-05"},
                                                  {123456789012345678.0, "1.23456789012346E+17"},
                                                  {1e14, "100000000000000"},
                                                  {NoValue, "1E+99"}};
  for (const auto& [number, text] : shown) EXPECT_EQ(numberText(number), text);

  const std::pair<const char*, double> read[] = {{" +1.5e3\t", 1500},
                                                 {".5", 0.5},
                                                 {"5.", 5},
                                                 {"-2", -2},
                                                 {"1e-400", 0},
                                                 {"0.000e999999999999", 0},
                                                 {"1e-9223372036854775807", 0},
                                                 {"007", 7}};
  for (const auto& [text, number] : read) EXPECT_EQ(numberOf(text), number) << text;
  for (const char* text : {"", " ", ".", "e5", "1e", "1,5", "1 2", "inf", "nan", "0x10", "1e400",
                           "10e9223372036854775807", "1e99999999999999999999", "--1", "1.2.3"}) {
    EXPECT_EQ(numberOf(text), std::nullopt) << text;
  }
  std::locale::global(before);
}

// Fault: a mixed value that turns silently into a number, or a flag that loses automation's -1.
TEST(Variant, ConvertsAsAutomationDoes) {
  EXPECT_EQ(Variant::flag(true).toNumber(), -1);
  EXPECT_EQ(Variant("2.5").toNumber(), 2.5);
  EXPECT_EQ(Variant().toNumber(), 0);
  EXPECT_EQ(failureNumber([] { Variant("two").toNumber(); }), 13);
  EXPECT_EQ(Variant(0.25).toText(), "0.25");
  EXPECT_EQ(Variant::flag(false).toText(), "False");
  EXPECT_TRUE(Variant("true").toFlag());
  EXPECT_TRUE(Variant(-1.0).toFlag());
  EXPECT_EQ(failureNumber([] { Variant("yes").toFlag(); }), 13);
}

// Fault: a host that is found after it has gone, or an entry that is none.
TEST(RunningObjects, HoldsWhatWasAddedLast) {
  EXPECT_EQ(failureNumber([] { RunningObjects::add("Other", nullptr); }), 5);
  const auto first = std::make_shared<EmbeddedHost>();
  const auto second = std::make_shared<EmbeddedHost>();
  RunningObjects::add("Other", first);
  RunningObjects::add("Other", second);
  EXPECT_EQ(RunningObjects::get("Other"), second);
  EXPECT_EQ(failureNumber([] { RunningObjects::get("other"); }), 429);
  RunningObjects::remove("Other");
  EXPECT_EQ(failureNumber([] { RunningObjects::get("Other"); }), 429);
}

}  // namespace
}  // namespace zelkova
