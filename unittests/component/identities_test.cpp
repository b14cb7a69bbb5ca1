#include "component/identities.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "component/idl.h"

namespace zelkova {
namespace {

struct Identities {
  const char* ofClass;
  const char* ofInterface;
};

// Clients hold on to these: an identity that changes breaks every one that was compiled. The values come from
// Python's uuid.uuid5 of the same names.
const std::map<std::string, Identities> held = {
    {"yPath", {"{DB402104-F5D3-518D-A4A4-6F5CE822949A}", "{137CE393-DD97-50CD-BFC5-8CF7390327CB}"}},
    {"yDStat", {"{EF3F2BEE-1479-5343-8AF4-F9B7AB69E389}", "{B515D279-6AED-5C67-B9E2-560514C1F90E}"}},
    {"yHTest", {"{3C34C7E8-846C-5C82-9072-3F09C7A9093C}", "{2BFCC447-7261-553C-A6B4-7FE19DE942AC}"}},
    {"yNormality", {"{4FCF0F5B-B4E5-5A47-8E4A-B13A04603511}", "{A5F202D7-79FB-5E33-BB68-42039494D4B4}"}},
    {"yRegression", {"{F04F1FA0-E947-57BD-A3BC-3563971759A8}", "{098055C0-EEDE-5B1A-B00E-EBA3950EF825}"}},
    {"yANOVA1", {"{59077C89-0565-5006-B0CC-D866C0AC8B89}", "{3AD9BA02-0E49-564D-BD26-26E00668A84A}"}},
    {"yANOVA2", {"{4D477534-1774-5430-9E09-4784B288BF8C}", "{BB63C080-4064-5AD5-97D9-45FF4D3ACF6F}"}},
    {"yGLM", {"{B1987A5E-64DD-5726-B938-548100230AE3}", "{E7007D47-AD61-5133-8B0F-CC4CA33058D3}"}},
    {"yRunTest", {"{070A2E6D-66C6-51CA-BED3-4D4B58DFDDAA}", "{279E9141-B073-5C1B-AEE7-1C3465458048}"}},
    {"yControlChart", {"{F74AB475-3CBE-514C-BAD2-E47016C9920A}", "{6F4F8678-2A6C-5618-8BB2-F44A9B0AE130}"}},
    {"yControlTest", {"{63E3ED63-5696-51E9-896D-1B699059727D}", "{C08DD5EB-3765-5515-90D9-E58BF5ABA40D}"}},
    {"yDOEGenerate", {"{2A3865A7-6C32-59BD-9033-79D50FBD8A6D}", "{FA010D94-63BF-5629-81C7-2FFB34A4F23F}"}},
    {"yDOEAnalyse", {"{70DF9941-D882-58A6-ACD5-75077B4B05CF}", "{FC2B0F0A-F975-58D1-B088-746476F385B7}"}},
    {"yFactorial", {"{A3F2C460-51CB-530B-B963-2830C0DD6370}", "{C4C64281-7410-5673-985E-C236C8EF9D28}"}},
};

TEST(Identities, NeverChange) {
  EXPECT_EQ(identities::ofLibrary(), "{5F04D1D0-4831-5906-8086-E965D7785972}");
  for (const Class& c : Catalogue::get().classes()) {
    ASSERT_TRUE(held.contains(c.name)) << c.name << " needs a line above";
    EXPECT_EQ(identities::ofClass(c.name), held.at(c.name).ofClass);
    EXPECT_EQ(identities::ofInterface(c.name), held.at(c.name).ofInterface);
  }
  // FNV-1a, folded to 30 bits, by a few lines of Python.
  EXPECT_EQ(identities::ofMethod("AppPath"), 260467498);
  EXPECT_EQ(identities::ofMethod("onetoutput"), 74233609);
}

TEST(Identities, TellEveryMethodOfAClassApart) {
  for (const Class& c : Catalogue::get().classes()) {
    std::set<std::int32_t> ids;
    for (const Method& method : c.methods) ids.insert(identities::ofMethod(method.name));
    EXPECT_EQ(ids.size(), c.methods.size()) << c.name;
  }
}

}  // namespace
}  // namespace zelkova
