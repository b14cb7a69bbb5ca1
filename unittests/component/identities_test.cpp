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
    {"yTemplate", {"{3ABB268B-5D2A-5220-B63F-C743F5B0838C}", "{E6A2220B-7368-515C-BB46-1C79A088A62A}"}},
    {"yPath", {"{DB402104-F5D3-518D-A4A4-6F5CE822949A}", "{137CE393-DD97-50CD-BFC5-8CF7390327CB}"}},
    {"yDStat", {"{EF3F2BEE-1479-5343-8AF4-F9B7AB69E389}", "{B515D279-6AED-5C67-B9E2-560514C1F90E}"}},
    {"yHTest", {"{3C34C7E8-846C-5C82-9072-3F09C7A9093C}", "{2BFCC447-7261-553C-A6B4-7FE19DE942AC}"}},
    {"yNormality", {"{4FCF0F5B-B4E5-5A47-8E4A-B13A04603511}", "{A5F202D7-79FB-5E33-BB68-42039494D4B4}"}},
    {"yRegression", {"{F04F1FA0-E947-57BD-A3BC-3563971759A8}", "{098055C0-EEDE-5B1A-B00E-EBA3950EF825}"}},
    {"yANOVA1", {"{59077C89-0565-5006-B0CC-D866C0AC8B89}", "{3AD9BA02-0E49-564D-BD26-26E00668A84A}"}},
    {"yANOVA2", {"{4D477534-1774-5430-9E09-4784B288BF8C}", "{BB63C080-4064-5AD5-97D9-45FF4D3ACF6F}"}},
    {"yANOM", {"{27A54627-D676-5CA0-BBF1-6D8D8C6A73B8}", "{2045F238-407C-5AC4-9496-719AE4B23755}"}},
    {"yGLM", {"{B1987A5E-64DD-5726-B938-548100230AE3}", "{E7007D47-AD61-5133-8B0F-CC4CA33058D3}"}},
    {"yBoxCox", {"{97A9D084-C602-5387-945E-655F2AA843BF}", "{5FD6B373-450E-5464-97EA-A32ACDBFFD64}"}},
    {"yHistogram", {"{C10EF87F-3B7C-51AF-95B6-338B5ECA969E}", "{6E42DCE3-78E8-5EE9-B3D1-DBF3E1B531EC}"}},
    {"yLogistic", {"{6479645E-2D96-5520-981D-A9A827D5C770}", "{653BB78C-E735-51E2-9BB1-9DA6476DEBA3}"}},
    {"yPASS", {"{C89EFB0D-9C76-561C-A253-E842DA4018CA}", "{23C05599-23F6-55A6-912E-35E42D539F93}"}},
    {"yRandom", {"{2C4D5C05-7FB2-53BF-9F99-D3FFC8C4DD74}", "{B7407334-E240-5BAE-8955-47B58D70337C}"}},
    {"yRunTest", {"{070A2E6D-66C6-51CA-BED3-4D4B58DFDDAA}", "{279E9141-B073-5C1B-AEE7-1C3465458048}"}},
    {"yControlChart", {"{F74AB475-3CBE-514C-BAD2-E47016C9920A}", "{6F4F8678-2A6C-5618-8BB2-F44A9B0AE130}"}},
    {"yControlTest", {"{63E3ED63-5696-51E9-896D-1B699059727D}", "{C08DD5EB-3765-5515-90D9-E58BF5ABA40D}"}},
    {"yCapability", {"{23BA680A-28F3-5C5C-B58A-FAE6250D3614}", "{E526A2BB-AAA4-5057-99E4-FF20D1CA24CB}"}},
    {"yCapabilityB", {"{AE68E7BA-0E63-5D57-A700-1788CDE7F2E5}", "{1290AB43-EDE7-5693-9632-A2B02F6B4200}"}},
    {"yCapabilityP", {"{207E0E5E-5E87-55C0-80AB-88419D935B02}", "{ACA25ECA-2E0C-5FC7-A514-52B454B3021A}"}},
    {"yCapabilityW", {"{B06BBB95-3A0E-5F95-80BD-B5BAF74C0683}", "{98EBEF71-C795-54BA-9801-FEF4877A99E8}"}},
    {"yGage", {"{4F743719-EDB4-589F-8899-5CCE43EFEFC0}", "{AD6381D1-B852-58C2-823F-6C7FC33FF84A}"}},
    {"yGageAtt", {"{D98A165E-E42E-56AA-9A38-883431AED9AE}", "{46F08629-0434-596E-8E2C-DDA621F6F844}"}},
    {"yGageLB", {"{7997EBA8-623B-5BB6-A4C2-D38C35AF65DD}", "{9C097BF7-6AE6-5EF6-81E3-372C9EA77D75}"}},
    {"yGageRun", {"{E5D84324-206C-570E-B66F-B801ACEF9068}", "{40B2FAB3-89BB-5AA4-B525-F45D08995C89}"}},
    {"yAAA", {"{4A23EC5E-5A9B-5130-8FAD-4D7C931A7353}", "{ED698B45-A18E-59BB-BE59-C30FC785F7F0}"}},
    {"yReliability", {"{54045DDB-8C63-547F-8D1D-A4C4883189E3}", "{25441E14-CF7C-5DC9-818A-AAEFD89EB51B}"}},
    {"yProbability", {"{685F7F3E-F09A-56A4-AE33-930CADB254A8}", "{5E712346-7161-5BE4-96CE-D9097BE633E6}"}},
    {"yDOEGenerate", {"{2A3865A7-6C32-59BD-9033-79D50FBD8A6D}", "{FA010D94-63BF-5629-81C7-2FFB34A4F23F}"}},
    {"yDOEAnalyse", {"{70DF9941-D882-58A6-ACD5-75077B4B05CF}", "{FC2B0F0A-F975-58D1-B088-746476F385B7}"}},
    {"yFactorial", {"{A3F2C460-51CB-530B-B963-2830C0DD6370}", "{C4C64281-7410-5673-985E-C236C8EF9D28}"}},
    {"yBoxplot", {"{E2DFF594-6957-5A47-BFCB-9EDE4EEA1611}", "{81DB5CC5-B319-5F66-8EEF-718671BF857E}"}},
    {"yDotplot", {"{92145095-7F99-5F94-AF13-2BAA2E2B7906}", "{B8448B08-E171-509E-A98A-ECEEE59BC799}"}},
    {"yMatrix", {"{FEEC3A45-175A-505A-92F4-2C5041553113}", "{52A65E19-19B2-53FF-9C26-B4473B78BAEC}"}},
    {"yMultiVari", {"{C65CFB6C-D0C0-5CA5-95FC-C805697B26E4}", "{496CC065-9BD0-5502-826C-3A837ED24102}"}},
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
