#include <cmath>

#include "component/AutomationSheet.h"
#include "component/Dispatch.h"
#include "component/identities.h"
#include "host/EmbeddedWorksheetFunction.h"
#include "unittests/component/windows/client.h"
#include "zelkova/catalogue/describe.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/RunningObjects.h"
#include "zelkova/frame/numberText.h"

/// The registered server as a client meets it.
namespace zelkova {
namespace {

/// Run before the stand-in is started.
class WithoutHost : public Client {};

/// Run while the stand-in is in the table of running objects.
class WithHost : public Client {};

TEST_F(WithoutHost, CreatesEveryClassThatNeedsNoneAndSaysWhatTheOthersLack) {
  for (const Class& c : Catalogue::get().classes()) {
    SetErrorInfo(0, nullptr);
    ComPtr<IDispatch> object;
    const HRESULT outcome = create(wide(identities::programId(c.name)).c_str(), object);
    if (!c.binds) {
      EXPECT_EQ(outcome, S_OK) << c.name;
      continue;
    }
    EXPECT_EQ(static_cast<unsigned long>(outcome), 0x800A01ADU) << c.name;
    ComPtr<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, &info), S_OK) << c.name;
    BSTR text = nullptr, source = nullptr;
    info->GetDescription(&text);
    info->GetSource(&source);
    EXPECT_NE(utf8(text).find("no running host was found under \"Excel.Application\""), std::string::npos);
    EXPECT_EQ(utf8(source), "zelkova." + c.name);
    SysFreeString(text);
    SysFreeString(source);
  }
}

// A kit routine looks for the host by itself; the class that calls it could be created without one.
TEST_F(WithoutHost, RaisesFailure429WhereARoutineNeedsIt) {
  ComPtr<IDispatch> object;
  ASSERT_EQ(create(L"zelkova.yDStat", object), S_OK);
  OwnedVariant result;
  const Ending ending =
      call(object.Get(), L"DesStatOutput", {typed<double>(VT_R8, {1, 2, 4}), referenceTo(result)});
  EXPECT_EQ(ending.number, 429);
  EXPECT_EQ(ending.source, "zelkova.yDStat");
}

TEST_F(WithoutHost, AnswersTheFolderOfTheLibrary) {
  ComPtr<IDispatch> object;
  ASSERT_EQ(create(L"zelkova.yPath", object), S_OK);
  OwnedVariant folder;
  ASSERT_EQ(call(object.Get(), L"apppath", {}, &folder).code, S_OK);
  std::wstring loaded(32768, L'\0');
  loaded.resize(GetModuleFileNameW(GetModuleHandleW(L"zelkova.dll"), loaded.data(), 32768));
  EXPECT_EQ(std::wstring(folder.bstrVal), loaded.substr(0, loaded.find_last_of(L'\\')));
}

// The library must go when its last object and lock have gone, and not before.
TEST_F(WithoutHost, UnloadsWhenNothingUsesIt) {
  const auto isLoaded = [] {
    for (int i = 0; i < 3; ++i) CoFreeUnusedLibrariesEx(0, 0);  // the first may only mark it
    return GetModuleHandleW(L"zelkova.dll") != nullptr;
  };
  CLSID id;
  ASSERT_EQ(CLSIDFromProgID(L"zelkova.yDStat", &id), S_OK);
  {
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(CoGetClassObject(id, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&factory)), S_OK);
    EXPECT_TRUE(isLoaded());
    ComPtr<IUnknown> outer;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_PPV_ARGS(&outer)), S_OK);
    ComPtr<IUnknown> inner;
    EXPECT_EQ(factory->CreateInstance(outer.Get(), IID_PPV_ARGS(&inner)), CLASS_E_NOAGGREGATION);
    factory->LockServer(TRUE);
    factory.Reset();
    EXPECT_TRUE(isLoaded());
    outer.Reset();
    EXPECT_TRUE(isLoaded());  // by the lock
    ASSERT_EQ(CoGetClassObject(id, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&factory)), S_OK);
    factory->LockServer(FALSE);
    EXPECT_TRUE(isLoaded());  // by the factory
  }
  void* mayUnload =
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"zelkova.dll"), "DllCanUnloadNow"));
  ASSERT_NE(mayUnload, nullptr);
  EXPECT_EQ(reinterpret_cast<HRESULT(WINAPI*)()>(mayUnload)(), S_OK);
  EXPECT_FALSE(isLoaded());
}

std::wstring path(const wchar_t* program) {
  CLSID id;
  if (FAILED(CLSIDFromProgID(program, &id))) return {};
  wchar_t text[40];
  StringFromGUID2(id, text, 40);
  const std::wstring key = std::wstring(L"CLSID\\") + text + L"\\InprocServer32";
  wchar_t result[MAX_PATH];
  DWORD size = sizeof result;
  return RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, result, &size) ==
                 ERROR_SUCCESS
             ? result
             : L"";
}

std::string takeText(BSTR text) {
  const std::string result = utf8(text);
  SysFreeString(text);
  return result;
}

std::pair<std::string, std::string> nameAndHelp(ITypeInfo* info, MEMBERID member) {
  BSTR name = nullptr, help = nullptr;
  EXPECT_EQ(info->GetDocumentation(member, &name, &help, nullptr, nullptr), S_OK);
  return {takeText(name), takeText(help)};
}

/// The type that a client sees, one level of reference away where `isReference` says so.
VARTYPE typeOfArgument(const TYPEDESC& type, bool& isReference) {
  isReference = type.vt == VT_PTR;
  return isReference ? type.lptdesc->vt : type.vt;
}

void expectArgument(const Argument& argument, const ELEMDESC& described, const std::string& where) {
  const USHORT flags = described.paramdesc.wParamFlags;
  EXPECT_EQ((flags & PARAMFLAG_FIN) != 0, argument.isInput()) << where;
  EXPECT_EQ((flags & PARAMFLAG_FOUT) != 0, argument.isOutput()) << where;
  EXPECT_EQ((flags & PARAMFLAG_FOPT) != 0, argument.optional) << where;
  bool isReference = false;
  const VARTYPE type = typeOfArgument(described.tdesc, isReference);
  EXPECT_EQ(isReference, argument.isOutput() || isArray(argument.type)) << where;
  const bool isVariant = isArray(argument.type) || argument.type == ValueType::Mixed;
  const bool isPlain = !argument.optional && !isVariant;
  EXPECT_TRUE(!isVariant || type == VT_VARIANT) << where;
  EXPECT_TRUE(!isPlain || argument.type != ValueType::Double || type == VT_R8) << where;
  EXPECT_TRUE(!isPlain || argument.type != ValueType::Text || type == VT_BSTR) << where;
  EXPECT_TRUE(!isPlain || argument.type != ValueType::Flag || type == VT_BOOL) << where;
  if ((flags & PARAMFLAG_FHASDEFAULT) == 0) {
    EXPECT_TRUE(!argument.optional || type == VT_VARIANT) << where;
    return;
  }
  const VARIANT& value = described.paramdesc.pparamdescex->varDefaultValue;
  if (const auto* text = std::get_if<std::string>(&argument.defaultValue)) {
    EXPECT_EQ(utf8(value.bstrVal), *text) << where;
  } else {
    EXPECT_EQ(value.boolVal != VARIANT_FALSE, std::get<bool>(argument.defaultValue)) << where;
  }
}

void expectMethod(ITypeInfo* info, UINT place, const Method& method, const std::string& where) {
  FUNCDESC* function = nullptr;
  ASSERT_EQ(info->GetFuncDesc(place, &function), S_OK) << where;
  EXPECT_EQ(nameAndHelp(info, function->memid), (std::pair{method.name, method.help})) << where;
  EXPECT_EQ(function->memid, identities::ofMethod(method.name)) << where;
  ASSERT_EQ(static_cast<std::size_t>(function->cParams), method.arguments.size()) << where;
  std::vector<BSTR> names(method.arguments.size() + 1);
  UINT count = 0;
  EXPECT_EQ(info->GetNames(function->memid, names.data(), static_cast<UINT>(names.size()), &count), S_OK);
  EXPECT_EQ(count, names.size()) << where;
  for (std::size_t i = 0; i < method.arguments.size(); ++i) {
    const Argument& argument = method.arguments[i];
    EXPECT_EQ(utf8(names[i + 1]), argument.name) << where;
    expectArgument(argument, function->lprgelemdescParam[i], where + ", " + argument.name);
  }
  for (BSTR name : names) SysFreeString(name);
  info->ReleaseFuncDesc(function);
}

TEST_F(WithoutHost, FindsTheWholeCatalogueInTheTypeLibrary) {
  ComPtr<ITypeLib> library;
  ASSERT_EQ(LoadTypeLib(path(L"zelkova.yPath").c_str(), &library), S_OK);
  EXPECT_EQ(library->GetTypeInfoCount(), 2 * Catalogue::get().classes().size());
  BSTR libraryName = nullptr;
  library->GetDocumentation(-1, &libraryName, nullptr, nullptr, nullptr);
  EXPECT_EQ(takeText(libraryName), "zelkova");
  for (const Class& c : Catalogue::get().classes()) {
    GUID id;
    ComPtr<ITypeInfo> coclass, interface_;
    IIDFromString(wide(identities::ofClass(c.name)).c_str(), &id);
    ASSERT_EQ(library->GetTypeInfoOfGuid(id, &coclass), S_OK) << c.name;
    EXPECT_EQ(nameAndHelp(coclass.Get(), MEMBERID_NIL), (std::pair{c.name, c.help}));
    INT flags = 0;
    HREFTYPE reference = 0;
    coclass->GetImplTypeFlags(0, &flags);
    EXPECT_EQ(flags & (IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE), IMPLTYPEFLAG_FDEFAULT) << c.name;
    ASSERT_EQ(coclass->GetRefTypeOfImplType(0, &reference), S_OK);
    ASSERT_EQ(coclass->GetRefTypeInfo(reference, &interface_), S_OK);
    EXPECT_EQ(nameAndHelp(interface_.Get(), MEMBERID_NIL).first, "_" + c.name);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(interface_->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->typekind, TKIND_DISPATCH) << c.name;
    IIDFromString(wide(identities::ofInterface(c.name)).c_str(), &id);
    EXPECT_TRUE(IsEqualGUID(attributes->guid, id)) << c.name;
    ASSERT_EQ(attributes->cFuncs, c.methods.size()) << c.name;
    interface_->ReleaseTypeAttr(attributes);
    for (std::size_t i = 0; i < c.methods.size(); ++i) {
      expectMethod(interface_.Get(), static_cast<UINT>(i), c.methods[i], c.name + "." + c.methods[i].name);
    }
  }
}

TEST_F(WithoutHost, TellsObjectsTheirOwnInterface) {
  ComPtr<IDispatch> object;
  ASSERT_EQ(create(L"zelkova.yDStat", object), S_OK);
  UINT count = 0;
  EXPECT_EQ(object->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1U);
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info), S_OK);
  EXPECT_EQ(nameAndHelp(info.Get(), MEMBERID_NIL).first, "_yDStat");
  EXPECT_EQ(object->GetTypeInfo(1, LOCALE_USER_DEFAULT, &info), DISP_E_BADINDEX);
  GUID id;
  IIDFromString(wide(identities::ofInterface("yDStat")).c_str(), &id);
  ComPtr<IUnknown> own;
  EXPECT_EQ(object->QueryInterface(id, reinterpret_cast<void**>(own.GetAddressOf())), S_OK);
}

/// Gosset's extra hours of sleep, and what R's t.test(x, mu = 0) says of them.
const std::vector<double> sleep = {0.7, -1.6, -0.2, -1.2, -0.1, 3.4, 3.7, 0.8, 0.0, 2.0};
constexpr double sleepPValue = 0.2175977800684489;

TEST_F(WithHost, ComputesWithTheHostsFunctions) {
  ComPtr<IDispatch> test;
  ASSERT_EQ(create(L"zelkova.yHTest", test), S_OK);
  OwnedVariant data = typed<double>(VT_R8, sleep, 0);
  SAFEARRAY* result = nullptr;
  const Ending ending =
      call(test.Get(), L"OneTOutput",
           {referenceTo(data.parray, VT_ARRAY | VT_R8), OwnedVariant(0), OwnedVariant::text("0.95"),
            OwnedVariant::text("Not equals"), referenceTo(result, VT_ARRAY | VT_R8)});
  ASSERT_EQ(ending.code, S_OK) << ending.text;
  const OwnedVariant owner = OwnedVariant::array(result, VT_R8);
  EXPECT_NEAR(at(owner, 10), sleepPValue, 1e-12);
}

TEST_F(WithHost, ReadsRangesAndWritesResultsToTheSheet) {
  const std::shared_ptr<Host> host = runningHost();
  const std::shared_ptr<Sheet> sheet = host->activeSheet();
  EXPECT_EQ(sheet->name(), "Sheet1");
  for (std::size_t i = 0; i < sleep.size(); ++i) {
    sheet->range("A" + std::to_string(i + 1))->setValue(sleep[i]);
  }
  sheet->range("B1:B2")->setValue("hours");
  EXPECT_EQ(sheet->range("B1:B2")->value().toText(), "hours");

  OwnedVariant address = OwnedVariant::text("A1:A10"), range, tooLong, result;
  IDispatch* object = dynamic_cast<AutomationSheet&>(*sheet).object();
  ASSERT_EQ(call(object, L"Range", {address}, &range).code, S_OK);
  ComPtr<IDispatch> test;
  ASSERT_EQ(create(L"zelkova.yHTest", test), S_OK);
  const std::vector<VARIANT> rest = {OwnedVariant(0), OwnedVariant(0.95), OwnedVariant::missing()};
  OwnedVariant alternative = OwnedVariant::text("Not equals");
  const auto run = [&](const VARIANT& cells) {
    return call(test.Get(), L"OneTOutput", {cells, rest[0], rest[1], alternative, referenceTo(result)});
  };
  const Ending ending = run(range);
  ASSERT_EQ(ending.code, S_OK) << ending.text;
  EXPECT_NEAR(at(result, 10), sleepPValue, 1e-12);

  address = OwnedVariant::text("A1:A11");
  ASSERT_EQ(call(object, L"Range", {address}, &tooLong).code, S_OK);
  EXPECT_EQ(run(tooLong).text, "Type mismatch: dy(11) is empty where a number is needed");
  EXPECT_EQ(run(OwnedVariant::object(object)).number, 13);

  // As one value too: an empty cell would be a tested mean of 0.
  address = OwnedVariant::text("Z50");
  OwnedVariant empty;
  ASSERT_EQ(call(object, L"Range", {address}, &empty).code, S_OK);
  EXPECT_EQ(call(test.Get(), L"OneTOutput", {range, empty, rest[1], alternative, referenceTo(result)}).text,
            "Type mismatch: TestMean is empty where a number is needed");
}

TEST_F(WithHost, CarriesTheHostsOwnWordsAs1004) {
  ComPtr<IDispatch> test;
  ASSERT_EQ(create(L"zelkova.yHTest", test), S_OK);
  OwnedVariant alternative = OwnedVariant::text("Not equals"), result = OwnedVariant::text("untouched");
  const OwnedVariant data = typed<double>(VT_R8, sleep);
  const Ending ending = call(test.Get(), L"OneTOutput",
                             {data, OwnedVariant(0), OwnedVariant(1.5), alternative, referenceTo(result)});
  EXPECT_EQ(ending.number, 1004);
  EXPECT_EQ(ending.text, "Unable to evaluate the worksheet function: TInv: p must be above 0 and at most 1");
  EXPECT_EQ(ending.source, "zelkova.yHTest");
  EXPECT_EQ(utf8(result.bstrVal), "untouched");
}

// Each function must reach the host under its own name, with its arguments in their order.
TEST_F(WithHost, ReachesEveryWorksheetFunction) {
  EmbeddedWorksheetFunction own;
  const std::shared_ptr<Host> running = runningHost();
  const std::vector<double> pool = {0.3, 4, 7, 9};
  for (const Method& method : Catalogue::get().worksheetFunctions().methods) {
    std::vector<Value> values;
    double next = 0.3;
    for (const Argument& argument : method.arguments) {
      if (argument.type == ValueType::Flag) {
        values.emplace_back(true);
      } else if (argument.type != ValueType::Double) {
        const bool square = method.name == "MInverse";
        values.emplace_back(square ? DoubleArray::table({{2, 1}, {1, 3}})
                                   : DoubleArray{next, 1 - next, 5 + next * next, 2});
      } else {
        values.emplace_back(next);
      }
      next += method.name == "TDist" ? 0.8 : 1.1;
    }
    if (method.name == "HypGeomDist") values = {1.0, 4.0, 8.0, 20.0};
    if (method.name == "BinomDist") values = {6.0, 10.0, 0.5, true};
    if (method.name == "BetaDist") values = {0.4, 2.0, 3.0};
    std::vector<Value> copy = values;
    const Value expected = method.call(static_cast<WorksheetFunction*>(&own), values);
    const Value actual = method.call(&running->worksheetFunction(), copy);
    EXPECT_EQ(actual, expected) << method.name;
  }
  EXPECT_EQ(running->worksheetFunction().Max(2, 7), 7);
  EXPECT_EQ(running->worksheetFunction().Min(2, 7), 2);
  const DoubleArray y{1, 2, 4}, none;
  EXPECT_EQ(running->worksheetFunction().LinEst(y, none, true, true), own.LinEst(y, none, true, true));
}

class SheetProbe {
 public:
  void Mark(const std::shared_ptr<Sheet>& sheet, std::string& name) const {
    name = sheet->name();
    sheet->range("D1")->setValue("marked");
  }
};

TEST_F(WithHost, WrapsASheetThatAClientPasses) {
  using Note = ArgumentNote;
  const Class description = Description<SheetProbe>("SheetProbe", "")
                                .method("Mark", &SheetProbe::Mark, "", Note("sheet", ""), Note("name", ""))
                                .done();
  ComPtr<IDispatch> probe;
  probe = new Dispatch(description, description.create(), "zelkova.SheetProbe");
  const std::shared_ptr<Sheet> sheet = runningHost()->activeSheet();
  const OwnedVariant passed = OwnedVariant::object(dynamic_cast<AutomationSheet&>(*sheet).object());
  OwnedVariant name;
  ASSERT_EQ(call(probe.Get(), L"Mark", {passed, referenceTo(name)}).code, S_OK);
  EXPECT_EQ(utf8(name.bstrVal), "Sheet1");
  EXPECT_EQ(sheet->range("D1")->value().toText(), "marked");
  EXPECT_EQ(call(probe.Get(), L"Mark", {OwnedVariant(1), referenceTo(name)}).text,
            "Type mismatch: sheet is no worksheet");
}

/// Counts the calls that went wrong on a thread of its own.
DWORD WINAPI callOften(void* faults) {
  CoInitialize(nullptr);
  for (int i = 0; i < 20; ++i) {
    ComPtr<IDispatch> test;
    OwnedVariant result, alternative = OwnedVariant::text("Not equals");
    const OwnedVariant data = typed<double>(VT_R8, sleep);
    const bool good = SUCCEEDED(create(L"zelkova.yHTest", test)) &&
                      call(test.Get(), L"OneTOutput",
                           {data, OwnedVariant(0), OwnedVariant(0.95), alternative, referenceTo(result)})
                              .code == S_OK &&
                      std::abs(at(result, 10) - sleepPValue) < 1e-12;
    if (!good) InterlockedIncrement(static_cast<LONG*>(faults));
  }
  CoUninitialize();
  return 0;
}

// Two apartments of one process work side by side, each with objects of its own.
TEST_F(WithHost, ServesSeveralThreads) {
  LONG faults = 0;
  HANDLE threads[2];
  for (HANDLE& thread : threads) thread = CreateThread(nullptr, 0, callOften, &faults, 0, nullptr);
  EXPECT_EQ(WaitForMultipleObjects(2, threads, TRUE, 60000), WAIT_OBJECT_0);
  for (HANDLE thread : threads) CloseHandle(thread);
  EXPECT_EQ(faults, 0);
}

}  // namespace
}  // namespace zelkova
