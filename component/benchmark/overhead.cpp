#include <wrl/client.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <vector>

#include "component/automation.h"
#include "component/invoke.h"
#include "zelkova/kit/yDStat.h"

/// What a call through automation costs over the same call in process: `yDStat.DesStatOutput` with a typed
/// array of a million values, the best of several runs each. The server must be registered.
namespace {

using namespace zelkova;

constexpr ULONG count = 1000000;

constexpr int repetitions = 20;

template <class Run>
double milliseconds(Run run) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  run();
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

int measure() {
  DoubleArray data(static_cast<Index>(count));
  unsigned state = 1;
  for (double& x : data.elements()) x = static_cast<double>(state = state * 1664525 + 1013904223) / 65536;

  SAFEARRAYBOUND bound = {count, 1};
  OwnedVariant passed = OwnedVariant::array(SafeArrayCreate(VT_R8, 1, &bound), VT_R8);
  std::copy(data.elements().begin(), data.elements().end(), static_cast<double*>(passed.parray->pvData));

  CLSID id;
  Microsoft::WRL::ComPtr<IDispatch> object;
  if (FAILED(CLSIDFromProgID(L"zelkova.yDStat", &id)) ||
      FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object)))) {
    std::cerr << "The server is not registered.\n";
    return 1;
  }
  const Member method(object.Get(), L"DesStatOutput");
  const auto callThrough = [&] {
    SAFEARRAY* result = nullptr;
    OwnedVariant arguments[2];
    arguments[0].vt = VT_BYREF | VT_ARRAY | VT_R8;
    arguments[0].pparray = &passed.parray;
    arguments[1].vt = VT_BYREF | VT_ARRAY | VT_R8;
    arguments[1].pparray = &result;
    method.get(arguments);
    SafeArrayDestroy(result);
  };
  const auto callDirectly = [&] {
    DoubleArray result;
    yDStat().DesStatOutput(data, result);
  };
  // By turns, so that what else the machine does falls on both.
  double through = milliseconds(callThrough), direct = milliseconds(callDirectly);
  for (int i = 1; i < repetitions; ++i) {
    through = std::min(through, milliseconds(callThrough));
    direct = std::min(direct, milliseconds(callDirectly));
  }
  std::cout << "des_stat/1e6 through automation " << through << " ms, in process " << direct
            << " ms, more by " << through - direct << " ms\n";
  return 0;
}

}  // namespace

int wmain() {
  if (FAILED(CoInitialize(nullptr))) return 1;
  const int code = measure();
  CoUninitialize();
  return code;
}
