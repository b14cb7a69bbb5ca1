#include <aclapi.h>

#include <algorithm>
#include <functional>

#include "component/identities.h"
#include "unittests/component/windows/client.h"
#include "zelkova/catalogue/Catalogue.h"

/// What registration leaves in the registry, and what is left after it was undone. Run with the server's
/// path in the environment, while nothing is registered.
namespace zelkova {
namespace {

constexpr const wchar_t* classes = L"Software\\Classes";

/// Calls `visit` with the path and the default value of each key below `root`'s classes.
void visitKeys(HKEY key, const std::wstring& path,
               const std::function<void(const std::wstring&, const std::wstring&)>& visit) {
  wchar_t value[512] = L"";
  DWORD size = sizeof value;
  RegGetValueW(key, nullptr, nullptr, RRF_RT_REG_SZ, nullptr, value, &size);
  visit(path, value);
  wchar_t name[256];
  for (DWORD i = 0;; ++i) {
    DWORD length = 256;
    if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) return;
    HKEY below = nullptr;
    if (RegOpenKeyExW(key, name, 0, KEY_READ, &below) != ERROR_SUCCESS) continue;
    visitKeys(below, path + L'\\' + name, visit);
    RegCloseKey(below);
  }
}

/// How many keys of `root` speak of the library.
int entriesIn(HKEY root) {
  int count = 0;
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, classes, 0, KEY_READ, &key) != ERROR_SUCCESS) return 0;
  const std::wstring library = wide(identities::ofLibrary());
  visitKeys(key, L"", [&](const std::wstring& path, const std::wstring& value) {
    const auto speaks = [&](const std::wstring& text) {
      return text.find(L"zelkova") != std::wstring::npos || text.find(library) != std::wstring::npos;
    };
    if (speaks(path) || speaks(value)) ++count;
  });
  RegCloseKey(key);
  return count;
}

class Registration : public testing::Test {
 protected:
  Registration() {
    wchar_t path[MAX_PATH] = L"";
    GetEnvironmentVariableW(L"ZELKOVA_DLL", path, MAX_PATH);
    library_ = LoadLibraryW(path);
  }
  ~Registration() override { FreeLibrary(library_); }

  HRESULT run(const char* function) {
    void* address = reinterpret_cast<void*>(GetProcAddress(library_, function));
    return address == nullptr ? E_NOTIMPL : reinterpret_cast<HRESULT(WINAPI*)()>(address)();
  }

  HMODULE library_;
};

/// A key of the machine that stands in the way of the first class, and that nobody may write to.
class WriteProtection {
 public:
  WriteProtection() {
    EXPLICIT_ACCESSW access{};
    access.grfAccessPermissions = KEY_READ | READ_CONTROL | WRITE_DAC;
    access.grfAccessMode = SET_ACCESS;
    access.Trustee.TrusteeForm = TRUSTEE_IS_SID;
    BYTE everyone[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof everyone;
    CreateWellKnownSid(WinWorldSid, nullptr, everyone, &size);
    access.Trustee.ptstrName = reinterpret_cast<LPWSTR>(everyone);
    PACL readOnly = nullptr;
    SetEntriesInAclW(1, &access, nullptr, &readOnly);
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, path().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_,
                    nullptr);
    SetSecurityInfo(key_, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, readOnly, nullptr);
    LocalFree(readOnly);
  }
  WriteProtection(const WriteProtection&) = delete;
  WriteProtection& operator=(const WriteProtection&) = delete;
  ~WriteProtection() {
    SetSecurityInfo(key_, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(key_);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, path().c_str());
  }

 private:
  static std::wstring path() {
    const std::string first = Catalogue::get().classes().front().name;
    return std::wstring(classes) + L'\\' + wide(identities::programId(first));
  }

  HKEY key_ = nullptr;
};

TEST_F(Registration, LeavesNothingBehind) {
  ASSERT_NE(library_, nullptr);
  ASSERT_EQ(entriesIn(HKEY_LOCAL_MACHINE) + entriesIn(HKEY_CURRENT_USER), 0);
  ASSERT_EQ(run("DllRegisterServer"), S_OK);
  // Two keys below the program id, and the class's and interface's own, for each class at the least.
  EXPECT_GE(entriesIn(HKEY_LOCAL_MACHINE), static_cast<int>(4 * Catalogue::get().classes().size()));
  EXPECT_EQ(entriesIn(HKEY_CURRENT_USER), 0);
  ASSERT_EQ(run("DllRegisterServer"), S_OK);  // again, as an update does
  ASSERT_EQ(run("DllUnregisterServer"), S_OK);
  EXPECT_EQ(entriesIn(HKEY_LOCAL_MACHINE) + entriesIn(HKEY_CURRENT_USER), 0);
  EXPECT_EQ(run("DllUnregisterServer"), S_OK);  // nothing to do
}

TEST_F(Registration, ServesTheUserAloneWithoutTheRightToMore) {
  {
    const WriteProtection protection;
    ASSERT_EQ(run("DllRegisterServer"), S_OK);
    EXPECT_LE(entriesIn(HKEY_LOCAL_MACHINE), 1);  // the key in the way, unless the clean-up could take it
    EXPECT_GE(entriesIn(HKEY_CURRENT_USER), static_cast<int>(4 * Catalogue::get().classes().size()));
    ASSERT_EQ(run("DllUnregisterServer"), S_OK);
  }
  EXPECT_EQ(entriesIn(HKEY_LOCAL_MACHINE) + entriesIn(HKEY_CURRENT_USER), 0);
  {
    const WriteProtection protection;
    ASSERT_EQ(run("DllRegisterServer"), S_OK);
  }
  EXPECT_GT(entriesIn(HKEY_CURRENT_USER), 0);
  ASSERT_EQ(run("DllRegisterServer"), S_OK);
  EXPECT_EQ(entriesIn(HKEY_CURRENT_USER), 0);  // it would hide the machine's
  ASSERT_EQ(run("DllUnregisterServer"), S_OK);
  EXPECT_EQ(entriesIn(HKEY_LOCAL_MACHINE) + entriesIn(HKEY_CURRENT_USER), 0);
}

/// The bytes in use in all heaps of the process.
std::size_t bytesInUse() {
  HANDLE heaps[64];
  const DWORD count = std::min<DWORD>(GetProcessHeaps(64, heaps), 64);
  std::size_t bytes = 0;
  for (DWORD i = 0; i < count; ++i) {
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
  }
  return bytes;
}

// A host that loads the library for each use must not grow with every one.
TEST_F(Registration, GivesItsMemoryBackWhenUnloaded) {
  wchar_t path[MAX_PATH] = L"";
  GetModuleFileNameW(library_, path, MAX_PATH);
  FreeLibrary(library_);
  const std::size_t before = bytesInUse();
  for (int i = 0; i < 20; ++i) FreeLibrary(LoadLibraryW(path));
  EXPECT_LT(bytesInUse(), before + 20 * 10000);  // 2 kB each are the C run-time library's
  library_ = LoadLibraryW(path);
}

// The other width's library stays usable.
TEST_F(Registration, KeepsTheOtherWidth) {
  const std::wstring other = std::wstring(classes) + L"\\TypeLib\\" + wide(identities::ofLibrary()) +
                             (sizeof(void*) == 8 ? L"\\0.1\\0\\win32" : L"\\0.1\\0\\win64");
  ASSERT_EQ(run("DllRegisterServer"), S_OK);
  RegSetKeyValueW(HKEY_LOCAL_MACHINE, other.c_str(), nullptr, REG_SZ, L"zelkova", 16);
  ASSERT_EQ(run("DllUnregisterServer"), S_OK);
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, other.c_str(), 0, KEY_READ, &key), ERROR_SUCCESS);
  RegCloseKey(key);
  // The program ids are one set for both.
  const std::wstring program = std::wstring(classes) + L"\\zelkova.yPath\\CLSID";
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, program.c_str(), 0, KEY_READ, &key), ERROR_SUCCESS);
  RegCloseKey(key);
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, other.substr(0, other.rfind(L"\\0\\")).c_str());
  ASSERT_EQ(run("DllUnregisterServer"), S_OK);
  EXPECT_EQ(entriesIn(HKEY_LOCAL_MACHINE), 0);
}

}  // namespace
}  // namespace zelkova
