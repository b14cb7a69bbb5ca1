#include <xmmintrin.h>

#include <cmath>
#include <limits>

#include "component/AutomationHost.h"
#include "component/AutomationSheet.h"
#include "component/Dispatch.h"
#include "unittests/component/windows/MemoryEnds.h"
#include "unittests/component/windows/client.h"
#include "zelkova/catalogue/describe.h"
#include "zelkova/kit/modzMatrix.h"

/// The crossing of arguments and failures, on a class that has what the library's own classes have, and more.
namespace zelkova {
namespace {

class Probe {
 public:
  void Sum(const DoubleArray& values, double& total) const {
    if (!values.filled()) raise(FailureNumber::OutOfRange);
    total = 0;
    for (const double x : values.elements()) total += x;
  }
  void Shape(const DoubleArray& table, DoubleArray& size) const {
    size = {static_cast<double>(table.rows()), static_cast<double>(table.columns()), table(1, 1),
            table(table.rows(), table.columns())};
  }
  void Join(const StringArray& labels, std::string& text, StringArray& copy) const {
    text.clear();
    for (const std::string& label : labels.elements()) text += label + '|';
    copy = labels;
  }
  double Options(std::int16_t whole, bool flag, const std::string& text, const Variant& mixed) const {
    return whole * 1000 + (flag ? 100 : 0) + static_cast<double>(text.size()) * 10 + mixed.toNumber();
  }
  void Reject(const DoubleArray& values, std::string& ErrorCode, DoubleArray& result) const {
    if (values.size() < 2) {
      ErrorCode = "Too few values";
      return;
    }
    result = values;
  }
  void HalfWay(double x, DoubleArray& first, DoubleArray& second) const {
    first = {x};
    if (x == -2) MatMultiply(DoubleArray::table({{1, 2}}), DoubleArray::table({{1, 2}}));
    if (x < 0) MatInverse(DoubleArray::table({{1, 2}, {2, 4}}));
    second = {x};
  }
  void Tell(double x, double& result) const {
    result = x;
    AutomationHost(nullptr).messageBox("This is for the user");
    if (x < 0) raise(FailureNumber::DivisionByZero);
  }
  double Ratio(double x, double y) const { return std::exp(x) / y; }
  std::string SheetName(const std::shared_ptr<Sheet>& sheet) const { return sheet->name(); }
};

const Class& probe() {
  using Note = ArgumentNote;
  static const Class description =
      Description<Probe>("Probe", "")
          .method("Sum", &Probe::Sum, "", Note("values", ""), Note("total", ""))
          .method("Shape", &Probe::Shape, "", Note("table", "").table(), Note("size", ""))
          .method("Join", &Probe::Join, "", Note("labels", ""), Note("text", ""), Note("copy", ""))
          .method("Options", &Probe::Options, "", Note("whole", ""), Note("flag", "").optional(true),
                  Note("text", "").optional(std::string("abc")), Note("mixed", "").optional(Variant(4.0)))
          .method("Reject", &Probe::Reject, "", Note("values", ""), Note("ErrorCode", "").inOut(),
                  Note("result", ""))
          .method("HalfWay", &Probe::HalfWay, "", Note("x", ""), Note("first", ""), Note("second", ""))
          .method("Tell", &Probe::Tell, "", Note("x", ""), Note("result", ""))
          .method("Ratio", &Probe::Ratio, "", Note("x", ""), Note("y", ""))
          .method("SheetName", &Probe::SheetName, "", Note("sheet", ""))
          .done();
  return description;
}

class DispatchTest : public Client {
 protected:
  DispatchTest() { object_ = new Dispatch(probe(), probe().create(), "zelkova.Probe"); }

  Ending sum(const VARIANT& values, double& total) {
    return call(object_.Get(), L"Sum", {values, referenceTo(total, VT_R8)});
  }

  ComPtr<IDispatch> object_;
};

// Each form that a client may pass an array in must reach the method with the same numbers.
TEST_F(DispatchTest, ReadsEveryFormOfAnArray) {
  const auto expectSum = [&](const VARIANT& values, double expected, const char* form) {
    double total = -1;
    const Ending ending = sum(values, total);
    EXPECT_EQ(ending.code, S_OK) << form << ": " << ending.text;
    EXPECT_EQ(total, expected) << form;
  };
  OwnedVariant doubles = typed<double>(VT_R8, {1, 2, 3.5}, -4);
  expectSum(doubles, 6.5, "doubles from -4");
  expectSum(referenceTo(doubles.parray, VT_ARRAY | VT_R8), 6.5, "reference to doubles");
  expectSum(referenceTo(doubles), 6.5, "reference to a variant that holds doubles");
  VARIANT nested = referenceTo(doubles);
  expectSum(referenceTo(nested), 6.5, "reference to a reference");
  expectSum(typed<std::int16_t>(VT_I2, {-1, 32767}, 0), 32766, "16 bits");
  expectSum(typed<std::int32_t>(VT_I4, {-1, 7}, 0), 6, "32 bits");
  expectSum(typed<std::int64_t>(VT_I8, {-1, 1LL << 40}, 1), (1LL << 40) - 1.0, "64 bits");
  expectSum(typed<unsigned char>(VT_UI1, {255, 1}), 256, "bytes");
  expectSum(typed<float>(VT_R4, {0.5F, 0.25F}), 0.75, "singles");
  expectSum(typed<CY>(VT_CY, {CY{{12500, 0}}}), 1.25, "currency");
  expectSum(typed<VARIANT_BOOL>(VT_BOOL, {VARIANT_TRUE, VARIANT_FALSE}), -1, "flags");
  expectSum(OwnedVariant(2.5), 2.5, "one value");
  OwnedVariant texts = typed<BSTR>(VT_BSTR, {newText("1.5"), newText(" 2 ")});
  expectSum(texts, 3.5, "numeric texts");
  std::vector<VARIANT> cells(3);
  cells[0] = OwnedVariant::text("4").release();
  cells[1].vt = VT_DATE;
  cells[1].date = 44000.5;
  cells[2] = doubles;  // its own array is no number; replaced below
  cells[2] = OwnedVariant::integer(2).release();
  expectSum(typed<VARIANT>(VT_VARIANT, cells), 44006.5, "variants");
}

/// A range as a spreadsheet hands it out, of one cell or of several areas.
class RangeProbe {
 public:
  RangeProbe() = default;
  explicit RangeProbe(double areas) : areas_(areas) {}

  double Value() const { return 1.5; }
  double Count() const { return areas_; }
  std::shared_ptr<Sheet> Areas() const;

 private:
  double areas_ = 1;
};

ComPtr<IDispatch> rangeOf(double areas) {
  static const Class description = Description<RangeProbe>("RangeProbe", "")
                                       .method("Value", &RangeProbe::Value, "")
                                       .method("Count", &RangeProbe::Count, "")
                                       .method("Areas", &RangeProbe::Areas, "")
                                       .done();
  ComPtr<IDispatch> object;
  object = new Dispatch(description, std::make_shared<RangeProbe>(areas), "Range");
  return object;
}

std::shared_ptr<Sheet> RangeProbe::Areas() const {
  return std::make_shared<AutomationSheet>(HostObject(rangeOf(areas_).Get()));
}

// An array of many cells must be read whole, and a range of several areas must not lose all but the first.
TEST_F(DispatchTest, ReadsArraysOfCellsAndRefusesSeveralAreas) {
  std::vector<VARIANT> cells;
  for (int i = 0; i < 12; ++i) cells.push_back(OwnedVariant::object(rangeOf(1).Get()).release());
  double total = 0;
  const Ending ending = sum(typed<VARIANT>(VT_VARIANT, cells), total);
  EXPECT_EQ(ending.code, S_OK) << ending.text;
  EXPECT_EQ(total, 18);
  EXPECT_EQ(sum(OwnedVariant::object(rangeOf(2).Get()), total).text,
            "Type mismatch: values is a range of 2 areas where one is needed");
}

// A host that traps divisions must not be ended by one, and one that computes short must not cost digits.
TEST_F(DispatchTest, ComputesAlikeUnderEverySettingOfTheProcessor) {
  const unsigned vectorControl = _mm_getcsr();
  unsigned short control = 0;
  asm volatile("fnstcw %0" : "=m"(control));
  const DISPID id = idOf(object_.Get(), L"Ratio");
  const auto ratio = [&](double x, double y) {
    VARIANT reversed[2] = {OwnedVariant(y).release(), OwnedVariant(x).release()};
    DISPPARAMS parameters = {reversed, nullptr, 2, 0};
    VARIANT result;
    VariantInit(&result);
    const unsigned short shortAndTrapping = 0x72;  // 24 bits; division by zero and invalid operations trap
    unsigned short after = 0;
    asm volatile("fnclex\n\tfldcw %0" : : "m"(shortAndTrapping));
    _mm_setcsr(0x1D00 | 0x8000);  // the same two trap; what underflows is 0
    object_->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, &result, nullptr, nullptr);
    asm volatile("fnstcw %0" : "=m"(after));
    const unsigned vectorAfter = _mm_getcsr();
    asm volatile("fnclex\n\tfldcw %0" : : "m"(control));
    _mm_setcsr(vectorControl);
    EXPECT_EQ(after, shortAndTrapping);
    EXPECT_EQ(vectorAfter & 0xFFC0U, 0x1D00U | 0x8000U);
    return result.dblVal;
  };
  EXPECT_DOUBLE_EQ(ratio(300, 1), 1.9424263952412558e130);  // R: exp(300)
  EXPECT_EQ(ratio(0, 0), std::numeric_limits<double>::infinity());
  EXPECT_GT(ratio(-700, 1e15), 0);
}

// A sheet's cells come as a table; a column is a vector to a method that takes one, and the other way round.
TEST_F(DispatchTest, FitsRowsColumnsAndTables) {
  const auto table = [](ULONG rows, ULONG columns) {
    SAFEARRAYBOUND both[2] = {{rows, 1}, {columns, 0}};
    OwnedVariant result = OwnedVariant::array(SafeArrayCreate(VT_R8, 2, both), VT_R8);
    auto* to = static_cast<double*>(result.parray->pvData);
    for (ULONG k = 0; k < rows * columns; ++k) to[k] = k + 1;
    return result;
  };
  double total = 0;
  EXPECT_EQ(sum(table(3, 1), total).code, S_OK);
  EXPECT_EQ(total, 6);
  EXPECT_EQ(sum(table(1, 4), total).code, S_OK);
  EXPECT_EQ(total, 10);
  const Ending refused = sum(table(2, 2), total);
  EXPECT_EQ(refused.number, 13);
  EXPECT_EQ(refused.text, "Type mismatch: values must be a vector, not a table of 2 by 2");

  OwnedVariant size;
  ASSERT_EQ(call(object_.Get(), L"Shape", {table(2, 3), referenceTo(size)}).code, S_OK);
  EXPECT_EQ((std::vector{at(size, 1), at(size, 2), at(size, 3), at(size, 4)}),
            (std::vector<double>{2, 3, 1, 6}));
  ASSERT_EQ(call(object_.Get(), L"Shape", {typed<double>(VT_R8, {5, 6}), referenceTo(size)}).code, S_OK);
  EXPECT_EQ((std::vector{at(size, 1), at(size, 2), at(size, 4)}), (std::vector<double>{2, 1, 6}));
}

// What is no number must be refused by name and place, and what was there before must stay.
TEST_F(DispatchTest, RefusesHostileValuesByName) {
  std::vector<VARIANT> cells(2);
  cells[0] = OwnedVariant(1).release();
  const auto refusal = [&](const VARIANT& values) {
    double total = 42;
    const Ending ending = sum(values, total);
    EXPECT_EQ(total, 42);
    EXPECT_EQ(ending.source, "zelkova.Probe");
    return ending.text;
  };
  const auto cell = [&](VARTYPE type) {
    cells[1] = {};
    cells[1].vt = type;
    return typed<VARIANT>(VT_VARIANT, cells);
  };
  EXPECT_EQ(refusal(cell(VT_EMPTY)), "Type mismatch: values(2) is empty where a number is needed");
  EXPECT_EQ(refusal(cell(VT_ERROR)), "Type mismatch: values(2) holds an error value");
  EXPECT_EQ(refusal(cell(VT_NULL)), "Type mismatch: values(2) holds no value");
  EXPECT_EQ(refusal(cell(VT_DISPATCH)), "Type mismatch: values(2) is an object that was never set");
  EXPECT_EQ(refusal(cell(VT_RECORD)), "Type mismatch: values(2) is no number");
  EXPECT_EQ(refusal(cell(VT_BYREF | VT_R8)), "Type mismatch: values(2) is a reference to nothing");
  cells[1] = referenceTo(cells[0], VT_RECORD);
  EXPECT_EQ(refusal(typed<VARIANT>(VT_VARIANT, cells)), "Type mismatch: values(2) is not one value");
  EXPECT_EQ(refusal(typed<BSTR>(VT_BSTR, {newText("1"), newText("x")})),
            "Type mismatch: values(2) is no number");
  for (const double odd : {std::numeric_limits<double>::infinity(), std::nan("")}) {
    EXPECT_EQ(refusal(typed<double>(VT_R8, {0, 1, odd})), "Type mismatch: values(3) is not a finite number");
    EXPECT_EQ(refusal(OwnedVariant(odd)), "Type mismatch: values(1) is not a finite number");
  }

  std::vector<SAFEARRAYBOUND> many(60, {1, 1});
  EXPECT_EQ(refusal(OwnedVariant::array(SafeArrayCreate(VT_R8, 60, many.data()), VT_R8)),
            "Type mismatch: values must be a vector of numbers, not an array of 60 dimensions");
  many[1].cElements = 0;
  EXPECT_EQ(refusal(OwnedVariant::array(SafeArrayCreate(VT_R8, 2, many.data()), VT_R8)),
            "Subscript out of range: nothing was given for values");
  OwnedVariant doubles = typed<double>(VT_R8, {1});
  VARIANT lying = doubles;
  lying.vt = VT_ARRAY | VT_VARIANT;
  EXPECT_EQ(refusal(lying), "Type mismatch: values is an array of another type");
  VARIANT nowhere{};
  nowhere.vt = VT_BYREF | VT_ARRAY | VT_R8;
  EXPECT_EQ(refusal(nowhere), "Type mismatch: values is a reference to nothing");
  VARIANT itself;
  itself.vt = VT_BYREF | VT_VARIANT;
  itself.pvarVal = &itself;
  EXPECT_EQ(refusal(itself), "Type mismatch: values is a reference to nothing");

  // An array that was never dimensioned, and nothing at all, were never filled.
  SAFEARRAY* undimensioned = nullptr;
  EXPECT_EQ(refusal(referenceTo(undimensioned, VT_ARRAY | VT_R8)),
            "Subscript out of range: nothing was given for values");
  EXPECT_EQ(refusal(OwnedVariant()), "Subscript out of range: nothing was given for values");
  SAFEARRAY* withoutData = nullptr;
  ASSERT_EQ(SafeArrayAllocDescriptorEx(VT_R8, 1, &withoutData), S_OK);
  withoutData->cbElements = sizeof(double);
  withoutData->rgsabound[0].cElements = 3;
  EXPECT_EQ(refusal(referenceTo(withoutData, VT_ARRAY | VT_R8)),
            "Subscript out of range: nothing was given for values");
  withoutData->fFeatures |= FADF_FIXEDSIZE;
  OwnedVariant text;
  EXPECT_EQ(
      call(object_.Get(), L"Reject",
           {typed<double>(VT_R8, {1, 2, 3}), referenceTo(text), referenceTo(withoutData, VT_ARRAY | VT_R8)})
          .number,
      9);
  withoutData->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
  SafeArrayDestroyDescriptor(withoutData);
}

// A typed variable gets a typed array, a variant an array of variants; both start at 1.
TEST_F(DispatchTest, GivesResultsInTheClientsForm) {
  const OwnedVariant data = typed<double>(VT_R8, {7, 8});
  BSTR error = nullptr;
  SAFEARRAY* result = nullptr;
  ASSERT_EQ(call(object_.Get(), L"Reject",
                 {data, referenceTo(error, VT_BSTR), referenceTo(result, VT_ARRAY | VT_R8)})
                .code,
            S_OK);
  OwnedVariant owner = OwnedVariant::array(result, VT_R8);
  EXPECT_EQ(bounds(result), (std::pair<LONG, LONG>{1, 2}));
  EXPECT_EQ(at(owner, 2), 8);

  OwnedVariant errorText, variant = typed<std::int32_t>(VT_I4, {1, 2, 3}, 0);
  ASSERT_EQ(call(object_.Get(), L"Reject", {data, referenceTo(errorText), referenceTo(variant)}).code, S_OK);
  EXPECT_EQ(variant.vt, VT_ARRAY | VT_VARIANT);
  EXPECT_EQ(bounds(variant.parray), (std::pair<LONG, LONG>{1, 2}));

  // Rejected data: the text is set, the result stays as it came.
  ASSERT_EQ(call(object_.Get(), L"Reject",
                 {typed<double>(VT_R8, {7}), referenceTo(errorText), referenceTo(variant)})
                .code,
            S_OK);
  EXPECT_EQ(utf8(errorText.bstrVal), "Too few values");
  EXPECT_EQ(at(variant, 2), 8);

  // An array of fixed size takes what fits it.
  SAFEARRAYBOUND bound = {2, 1};
  OwnedVariant fixed = OwnedVariant::array(SafeArrayCreate(VT_R8, 1, &bound), VT_R8);
  fixed.parray->fFeatures |= FADF_FIXEDSIZE;
  const VARIANT fixedReference = referenceTo(fixed.parray, VT_ARRAY | VT_R8);
  ASSERT_EQ(call(object_.Get(), L"Reject", {data, referenceTo(errorText), fixedReference}).code, S_OK);
  EXPECT_EQ(at(fixed, 1), 7);
  EXPECT_EQ(call(object_.Get(), L"Reject",
                 {typed<double>(VT_R8, {1, 2, 3}), referenceTo(errorText), fixedReference})
                .number,
            9);
  EXPECT_EQ(at(fixed, 1), 7);
  fixed.parray->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);

  // Texts, there and back.
  OwnedVariant text, copy;
  std::vector<VARIANT> labels(3);
  labels[0] = OwnedVariant(0.1).release();
  labels[1] = OwnedVariant::flag(true).release();
  labels[2] = OwnedVariant::text("M\xC3\xBCller").release();
  ASSERT_EQ(
      call(object_.Get(), L"Join", {typed<VARIANT>(VT_VARIANT, labels), referenceTo(text), referenceTo(copy)})
          .code,
      S_OK);
  EXPECT_EQ(utf8(text.bstrVal), "0.1|True|M\xC3\xBCller|");
  EXPECT_EQ(copy.vt, VT_ARRAY | VT_VARIANT);
  // Two long numbers that a double cannot tell apart are two labels.
  ASSERT_EQ(call(object_.Get(), L"Join",
                 {typed<std::int64_t>(VT_I8, {9007199254740992, 9007199254740993}), referenceTo(text),
                  referenceTo(copy)})
                .code,
            S_OK);
  EXPECT_EQ(utf8(text.bstrVal), "9007199254740992|9007199254740993|");
}

// One variable for two results keeps the last, and one for data and result is read before it is replaced.
TEST_F(DispatchTest, TakesOneVariableTwice) {
  OwnedVariant both;
  ASSERT_EQ(call(object_.Get(), L"HalfWay", {OwnedVariant(2), referenceTo(both), referenceTo(both)}).code,
            S_OK);
  EXPECT_EQ(at(both, 1), 2);
  OwnedVariant data = typed<double>(VT_R8, {7, 8}, 0);
  // As VBA passes an array where a variant is declared.
  VARIANT array = referenceTo(data.parray, VT_ARRAY | VT_R8);
  OwnedVariant text;
  ASSERT_EQ(call(object_.Get(), L"Reject", {referenceTo(array), referenceTo(text), referenceTo(array)}).code,
            S_OK);
  EXPECT_EQ(bounds(data.parray), (std::pair<LONG, LONG>{1, 2}));
  EXPECT_EQ(at(data, 2), 8);
}

// A result that would be lost, or forced into a type that cannot hold it, is refused before the method runs.
TEST_F(DispatchTest, RefusesVariablesThatCannotTakeTheResult) {
  const OwnedVariant data = typed<double>(VT_R8, {7, 8});
  EXPECT_EQ(call(object_.Get(), L"Sum", {data, OwnedVariant()}).text,
            "Type mismatch: total is a result and must be passed by reference");
  LONG whole = 5;
  EXPECT_EQ(call(object_.Get(), L"Sum", {data, referenceTo(whole, VT_I4)}).text,
            "Type mismatch: total is a number, which the variable passed for it cannot take");
  EXPECT_EQ(whole, 5);
  OwnedVariant text;
  SAFEARRAY* texts = nullptr;
  EXPECT_EQ(call(object_.Get(), L"Reject", {data, referenceTo(text), referenceTo(texts, VT_ARRAY | VT_BSTR)})
                .number,
            13);
  OwnedVariant locked = typed<double>(VT_R8, {1});
  SafeArrayLock(locked.parray);
  EXPECT_EQ(
      call(object_.Get(), L"Reject", {data, referenceTo(text), referenceTo(locked.parray, VT_ARRAY | VT_R8)})
          .text,
      "Type mismatch: result is locked and cannot take a result");
  SafeArrayUnlock(locked.parray);
}

TEST_F(DispatchTest, TakesNamedMissingAndOptionalArguments) {
  const auto answer = [&](std::vector<VARIANT> reversed, std::vector<DISPID> names, HRESULT code = S_OK) {
    OwnedVariant result;
    const DISPPARAMS parameters = {reversed.data(), names.empty() ? nullptr : names.data(),
                                   static_cast<UINT>(reversed.size()), static_cast<UINT>(names.size())};
    const Ending ending = invoke(object_.Get(), idOf(object_.Get(), L"options"), parameters, &result);
    EXPECT_EQ(ending.code, code) << ending.text;
    return result.vt == VT_R8 ? result.dblVal : -1;
  };
  wchar_t method[] = L"OPTIONS", mixed[] = L"Mixed", whole[] = L"WHOLE", unknown[] = L"nothing";
  LPOLESTR names[] = {method, mixed, whole, unknown};
  DISPID ids[4] = {};
  EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, names, 3, 0, ids), S_OK);
  EXPECT_EQ(ids[1], 3);
  EXPECT_EQ(ids[2], 0);
  EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, names, 4, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[3], DISPID_UNKNOWN);

  const OwnedVariant seven = OwnedVariant::integer(7), no = OwnedVariant::flag(false),
                     missing = OwnedVariant::missing(), two = OwnedVariant(2),
                     text = OwnedVariant::text("-1");
  EXPECT_EQ(answer({seven}, {}), 7134);                    // 7000 + flag 100 + "abc" 30 + 4
  EXPECT_EQ(answer({two, missing, no, seven}, {}), 7032);  // the third argument is missing
  EXPECT_EQ(answer({two, seven}, {3, 0}), 7132);           // both by name
  EXPECT_EQ(answer({two, seven}, {3}), 7132);              // one by name
  EXPECT_EQ(answer({text, seven}, {1}), 7134);             // "-1" is a flag
  OwnedVariant handedOn = OwnedVariant::missing();         // the client's own argument, that it was not given
  EXPECT_EQ(answer({referenceTo(handedOn), no, seven}, {}), 7034);
  EXPECT_EQ(answer({referenceTo(handedOn)}, {}, DISP_E_PARAMNOTOPTIONAL), -1);
  EXPECT_EQ(answer({}, {}, DISP_E_PARAMNOTOPTIONAL), -1);
  EXPECT_EQ(answer({missing}, {}, DISP_E_PARAMNOTOPTIONAL), -1);
  EXPECT_EQ(answer({two, two, two, two, seven}, {}, DISP_E_BADPARAMCOUNT), -1);
  EXPECT_EQ(answer({two, seven}, {0}, DISP_E_PARAMNOTFOUND), -1);  // by position and by name
  EXPECT_EQ(answer({two, seven}, {9}, DISP_E_PARAMNOTFOUND), -1);
  EXPECT_EQ(answer({two, seven}, {-3}, DISP_E_PARAMNOTFOUND), -1);
  // A half goes to even; what no 16 bits hold is an overflow.
  EXPECT_EQ(answer({OwnedVariant(6.5)}, {}), 6134);
  EXPECT_EQ(answer({OwnedVariant(40000)}, {}, DISP_E_EXCEPTION), -1);

  // An output that is left out would lose the result without a word.
  const OwnedVariant data = typed<double>(VT_R8, {1});
  EXPECT_EQ(call(object_.Get(), L"Sum", {data}).code, DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(DispatchTest, SurvivesCallsThatMakeNoSense) {
  const DISPID id = idOf(object_.Get(), L"Sum");
  EXPECT_EQ(object_->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
            E_INVALIDARG);
  DISPPARAMS parameters = {nullptr, nullptr, 2, 0};
  EXPECT_EQ(object_->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
            E_INVALIDARG);
  VARIANT one = OwnedVariant(1).release();
  parameters = {&one, nullptr, 1, 1};
  EXPECT_EQ(object_->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
            E_INVALIDARG);
  parameters = {};
  EXPECT_EQ(object_->Invoke(id, IID_IDispatch, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
            DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(object_->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYPUT, &parameters, nullptr, nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(object_->Invoke(12345, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, nullptr, 1, 0, nullptr), E_POINTER);
  EXPECT_EQ(object_->QueryInterface(IID_IDispatch, nullptr), E_POINTER);
  ComPtr<IDispatch> other;
  EXPECT_EQ(object_->QueryInterface(IID_IClassFactory, reinterpret_cast<void**>(other.GetAddressOf())),
            E_NOINTERFACE);

  // A failure crosses as a code also where the client wants no words for it.
  double total = 0;
  VARIANT arguments[2] = {referenceTo(total, VT_R8), OwnedVariant::missing().release()};
  parameters = {arguments, nullptr, 2, 0};
  EXPECT_EQ(object_->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
            DISP_E_EXCEPTION);
}

// Wherever memory ends, a call must end with a code: no exception of C++ may reach the client.
TEST_F(DispatchTest, EndsWithACodeWhereMemoryEnds) {
  OwnedVariant data = typed<BSTR>(VT_BSTR, {newText("a label that is longer than most"), newText("b")});
  wchar_t name[] = L"ANameThatIsLongerThanMostAndUnknown";
  const DISPID id = idOf(object_.Get(), L"Join");
  GUID unknown{};
  for (const int what : {0, 1, 2}) {
    bool done = false;
    for (int allowed = 0; !done; ++allowed) {
      ASSERT_LT(allowed, 10000);
      OwnedVariant text = OwnedVariant::text("before"), copy;
      VARIANT reversed[3] = {referenceTo(copy), referenceTo(text), data};
      DISPPARAMS parameters = {reversed, nullptr, 3, 0};
      EXCEPINFO exception{};
      LPOLESTR names = name;
      DISPID found = 0;
      ComPtr<IUnknown> other;
      HRESULT code = S_OK;
      {
        const MemoryEnds limit(allowed);
        if (what == 0) code = object_->GetIDsOfNames(IID_NULL, &names, 1, 0, &found);
        if (what == 1)
          code = object_->QueryInterface(unknown, reinterpret_cast<void**>(other.GetAddressOf()));
        if (what == 2) {
          code = object_->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, &exception, nullptr);
        }
        done = !limit.wasReached();
      }
      SysFreeString(exception.bstrSource);
      SysFreeString(exception.bstrDescription);
      if (!done && code == DISP_E_EXCEPTION) {
        EXPECT_EQ(exception.scode & 0xFFFF, 7);
        EXPECT_EQ(utf8(text.bstrVal), "before");
        EXPECT_EQ(copy.vt, VT_EMPTY);
      } else if (!done) {
        EXPECT_EQ(code, E_OUTOFMEMORY);
      } else {
        EXPECT_EQ(code, what == 0 ? DISP_E_UNKNOWNNAME : what == 1 ? E_NOINTERFACE : S_OK);
      }
    }
  }
}

// The number, the text and the source of a failure arrive, and so does what was assigned before it.
TEST_F(DispatchTest, CarriesFailuresWithWhatWasAssigned) {
  OwnedVariant first, second(3);
  const Ending ending =
      call(object_.Get(), L"HalfWay", {OwnedVariant(-1), referenceTo(first), referenceTo(second)});
  EXPECT_EQ(ending.code, DISP_E_EXCEPTION);
  EXPECT_EQ(ending.number, 5012);
  EXPECT_EQ(ending.text, "Determinent equals zero, inverse can't be found !");
  EXPECT_EQ(ending.source, "zelkova.Probe");
  EXPECT_EQ(at(first, 1), -1);
  EXPECT_EQ(second.vt, VT_R8);

  const Ending product =
      call(object_.Get(), L"HalfWay", {OwnedVariant(-2), referenceTo(first), referenceTo(second)});
  EXPECT_EQ(product.number, 5009);
  EXPECT_EQ(product.text, "Dimensions of the two matrices not suitable for multiplication !");

  // A variable that cannot take its part does not hide the failure.
  OwnedVariant small = typed<double>(VT_R8, {1, 2});
  small.parray->fFeatures |= FADF_FIXEDSIZE;
  EXPECT_EQ(call(object_.Get(), L"HalfWay",
                 {OwnedVariant(-1), referenceTo(small.parray, VT_ARRAY | VT_R8), referenceTo(second)})
                .number,
            5012);
  small.parray->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
}

// Without a desktop a box would wait for ever: its text ends the call, and the outputs are there.
TEST_F(DispatchTest, TellsTheTextOfABoxThatNobodyCouldSee) {
  HWINSTA own = GetProcessWindowStation();
  HWINSTA hidden = CreateWindowStationW(L"zelkova-hidden", 0, WINSTA_ALL_ACCESS, nullptr);
  ASSERT_NE(hidden, nullptr);
  ASSERT_TRUE(SetProcessWindowStation(hidden));
  double result = 0;
  const Ending shown = call(object_.Get(), L"Tell", {OwnedVariant(5), referenceTo(result, VT_R8)});
  EXPECT_EQ(shown.number, 5);
  EXPECT_EQ(shown.text, "This is for the user");
  EXPECT_EQ(result, 5);
  const Ending failed = call(object_.Get(), L"Tell", {OwnedVariant(-5), referenceTo(result, VT_R8)});
  EXPECT_EQ(failed.number, 11);
  EXPECT_EQ(failed.text, "This is for the user");
  EXPECT_EQ(result, -5);
  SetProcessWindowStation(own);
  CloseWindowStation(hidden);
}

}  // namespace
}  // namespace zelkova
