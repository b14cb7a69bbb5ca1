#include "component/AutomationHost.h"

#include <array>
#include <map>
#include <utility>

#include "component/AutomationSheet.h"
#include "component/arguments.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/RunningObjects.h"

namespace zelkova {

namespace {

/// A plain pointer, because the library may be unloaded before the thread ends.
thread_local UnshownMessages* collector = nullptr;

/// Whether a user could see, and answer, a box.
bool desktopIsInteractive() {
  USEROBJECTFLAGS flags{};
  HWINSTA station = GetProcessWindowStation();
  return station != nullptr && GetUserObjectInformationW(station, UOI_FLAGS, &flags, sizeof flags, nullptr) &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

OwnedVariant asVariant(double number) { return OwnedVariant(number); }
OwnedVariant asVariant(bool flag) { return OwnedVariant::flag(flag); }
OwnedVariant asVariant(const DoubleArray& array) {
  if (!array.filled()) return OwnedVariant::missing();
  return resultVariant(array);
}

}  // namespace

/// The host's functions; each looks up its dispatch id once.
class AutomationHost::Functions final : public WorksheetFunction {
 public:
  explicit Functions(HostObject object) : object_(std::move(object)) {}

  double NormSDist(double z) override { return number(L"NormSDist", z); }
  double NormSInv(double p) override { return number(L"NormSInv", p); }
  double NormDist(double x, double mean, double sd, bool cumulative) override {
    return number(L"NormDist", x, mean, sd, cumulative);
  }
  double NormInv(double p, double mean, double sd) override { return number(L"NormInv", p, mean, sd); }
  double LogNormDist(double x, double mean, double sd) override {
    return number(L"LogNormDist", x, mean, sd);
  }
  double LogInv(double p, double mean, double sd) override { return number(L"LogInv", p, mean, sd); }
  double TDist(double x, double df, double tails) override { return number(L"TDist", x, df, tails); }
  double TInv(double p, double df) override { return number(L"TInv", p, df); }
  double ChiDist(double x, double df) override { return number(L"ChiDist", x, df); }
  double ChiInv(double p, double df) override { return number(L"ChiInv", p, df); }
  double FDist(double x, double df1, double df2) override { return number(L"FDist", x, df1, df2); }
  double FInv(double p, double df1, double df2) override { return number(L"FInv", p, df1, df2); }
  double BetaDist(double x, double alpha, double beta) override {
    return number(L"BetaDist", x, alpha, beta);
  }
  double BetaInv(double p, double alpha, double beta) override { return number(L"BetaInv", p, alpha, beta); }
  double GammaInv(double p, double alpha, double beta) override {
    return number(L"GammaInv", p, alpha, beta);
  }
  double GammaLn(double x) override { return number(L"GammaLn", x); }
  double BinomDist(double successes, double trials, double probability, bool cumulative) override {
    return number(L"BinomDist", successes, trials, probability, cumulative);
  }
  double Poisson(double x, double mean, bool cumulative) override {
    return number(L"Poisson", x, mean, cumulative);
  }
  double HypGeomDist(double sampleSuccesses, double sampleSize, double populationSuccesses,
                     double populationSize) override {
    return number(L"HypGeomDist", sampleSuccesses, sampleSize, populationSuccesses, populationSize);
  }
  double ExponDist(double x, double lambda, bool cumulative) override {
    return number(L"ExponDist", x, lambda, cumulative);
  }
  double Weibull(double x, double shape, double scale, bool cumulative) override {
    return number(L"Weibull", x, shape, scale, cumulative);
  }

  double Max(const DoubleArray& values) override { return number(L"Max", values); }
  double Max(double a, double b) override { return number(L"Max", a, b); }
  double Min(const DoubleArray& values) override { return number(L"Min", values); }
  double Min(double a, double b) override { return number(L"Min", a, b); }
  double Ceiling(double x, double significance) override { return number(L"Ceiling", x, significance); }
  double RoundUp(double x, double digits) override { return number(L"RoundUp", x, digits); }
  double Gcd(double a, double b) override { return number(L"Gcd", a, b); }
  double Sum(const DoubleArray& values) override { return number(L"Sum", values); }
  double Average(const DoubleArray& values) override { return number(L"Average", values); }
  double Pi() override { return number(L"Pi"); }

  double Slope(const DoubleArray& knownY, const DoubleArray& knownX) override {
    return number(L"Slope", knownY, knownX);
  }
  double Intercept(const DoubleArray& knownY, const DoubleArray& knownX) override {
    return number(L"Intercept", knownY, knownX);
  }
  double Correl(const DoubleArray& a, const DoubleArray& b) override { return number(L"Correl", a, b); }
  DoubleArray LinEst(const DoubleArray& knownY, const DoubleArray& knownX, bool constant,
                     bool stats) override {
    return table(L"LinEst", call(L"LinEst", knownY, knownX, constant, stats));
  }
  DoubleArray MInverse(const DoubleArray& matrix) override {
    return table(L"MInverse", call(L"MInverse", matrix));
  }

 private:
  template <class... Arguments>
  OwnedVariant call(const wchar_t* name, const Arguments&... arguments) {
    const auto [entry, isNew] = ids_.try_emplace(name, DISPID_UNKNOWN);
    if (isNew || entry->second == DISPID_UNKNOWN) entry->second = object_.member(name).id();
    std::array<OwnedVariant, sizeof...(Arguments)> variants = {asVariant(arguments)...};
    return Member(object_.pointer(), entry->second).get(variants);
  }

  template <class... Arguments>
  double number(const wchar_t* name, const Arguments&... arguments) {
    const OwnedVariant result = call(name, arguments...);
    const Argument answer = describedAs("the result of " + utf8(std::wstring_view(name)), ValueType::Double);
    try {
      return std::get<double>(valueOf(answer, result, LOCALE_USER_DEFAULT));
    } catch (const Failure& failure) {
      throw Failure(static_cast<int>(FailureNumber::HostRefused), failure.text());
    }
  }

  /// A table out of what the host answers: one row may come as a vector and one cell as a number, and cells
  /// without a value are error values.
  static DoubleArray table(const wchar_t* name, const OwnedVariant& answer) {
    const Argument cells = describedAs("the result of " + utf8(std::wstring_view(name)),
                                       ValueType::MixedValues, Shape::VectorOrTable);
    if ((answer.vt & VT_ARRAY) == 0) return DoubleArray::table({{cellValue(answer).toNumber()}});
    replaceErrors(answer);
    const auto held = std::get<VariantArray>(valueOf(cells, answer, LOCALE_USER_DEFAULT));
    const bool isRow = held.dimensions() == 1;
    DoubleArray result(isRow ? 1 : held.rows(), isRow ? held.rows() : held.columns(), 0);
    for (Index i = 0; i < held.size(); ++i) {
      result.elements()[static_cast<std::size_t>(i)] =
          held.elements()[static_cast<std::size_t>(i)].toNumber();
    }
    return result;
  }

  static void replaceErrors(const OwnedVariant& answer) {
    if (answer.vt != (VT_ARRAY | VT_VARIANT)) return;
    VARIANT* cells = nullptr;
    if (FAILED(SafeArrayAccessData(answer.parray, reinterpret_cast<void**>(&cells)))) return;
    std::size_t count = 1;
    for (int i = 0; i < answer.parray->cDims; ++i) count *= answer.parray->rgsabound[i].cElements;
    for (VARIANT& cell : std::span(cells, count)) {
      if (cell.vt == VT_ERROR) cell = OwnedVariant(NoValue).release();
    }
    SafeArrayUnaccessData(answer.parray);
  }

  HostObject object_;
  std::map<std::wstring_view, DISPID> ids_;
};

AutomationHost::AutomationHost(IDispatch* application) : application_(application) {}

AutomationHost::~AutomationHost() = default;

WorksheetFunction& AutomationHost::worksheetFunction() {
  if (functions_ == nullptr) {
    functions_ = std::make_unique<Functions>(application_.object(L"WorksheetFunction"));
  }
  return *functions_;
}

std::shared_ptr<Sheet> AutomationHost::activeSheet() {
  return std::make_shared<AutomationSheet>(application_.object(L"ActiveSheet"));
}

void AutomationHost::messageBox(const std::string& text) {
  if (desktopIsInteractive()) {
    MessageBoxW(nullptr, wide(text).c_str(), L"zelkova", MB_OK | MB_TASKMODAL);
  } else if (collector != nullptr) {
    collector->texts_.push_back(text);
  }
}

UnshownMessages::UnshownMessages() : outer_(std::exchange(collector, this)) {}

UnshownMessages::~UnshownMessages() { collector = outer_; }

}  // namespace zelkova
