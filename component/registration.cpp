#include "component/registration.h"

#include <olectl.h>

#include <string>
#include <vector>

#include "component/Module.h"
#include "component/identities.h"
#include "zelkova/catalogue/Catalogue.h"

namespace zelkova {

namespace {

#ifdef _WIN64
constexpr const char* width = "win64";
#else
constexpr const char* width = "win32";
#endif

/// The marshaller of dispatch interfaces, automation's own.
constexpr const char* dispatchProxy = "{00020420-0000-0000-C000-000000000046}";

constexpr const wchar_t* classesKey = L"Software\\Classes";

/// A value of a key below the classes; an empty name is the key's default value.
struct Entry {
  std::string key;
  std::string name;
  std::string text;
};

std::string libraryKey() { return "TypeLib\\" + identities::ofLibrary(); }

/// Keys and library versions are written in hexadecimal.
std::string libraryVersion() {
  return std::to_string(identities::majorVersion) + '.' + std::to_string(identities::minorVersion);
}

/// The keys that belong to this width alone; their trees go as a whole.
std::vector<std::string> ownTrees() {
  std::vector<std::string> trees;
  for (const Class& c : Catalogue::get().classes()) {
    trees.push_back("CLSID\\" + identities::ofClass(c.name));
    trees.push_back("Interface\\" + identities::ofInterface(c.name));
  }
  trees.push_back(libraryKey() + '\\' + libraryVersion() + "\\0\\" + width);
  return trees;
}

std::vector<Entry> entries() {
  const std::string path = utf8(Module::path());
  const std::string folder = path.substr(0, path.find_last_of("\\/"));
  const std::string library = identities::ofLibrary();
  std::vector<Entry> all;
  for (const Class& c : Catalogue::get().classes()) {
    const std::string id = identities::ofClass(c.name);
    const std::string program = identities::programId(c.name);
    const std::string classKey = "CLSID\\" + id;
    const std::string interfaceKey = "Interface\\" + identities::ofInterface(c.name);
    all.push_back({program, "", c.help});
    all.push_back({program + "\\CLSID", "", id});
    all.push_back({classKey, "", c.help});
    all.push_back({classKey + "\\InprocServer32", "", path});
    all.push_back({classKey + "\\InprocServer32", "ThreadingModel", "Apartment"});
    all.push_back({classKey + "\\ProgID", "", program});
    all.push_back({classKey + "\\Programmable", "", ""});
    all.push_back({classKey + "\\TypeLib", "", library});
    all.push_back({classKey + "\\Version", "", libraryVersion()});
    all.push_back({interfaceKey, "", identities::interfaceName(c.name)});
    all.push_back({interfaceKey + "\\ProxyStubClsid32", "", dispatchProxy});
    all.push_back({interfaceKey + "\\TypeLib", "", library});
    all.push_back({interfaceKey + "\\TypeLib", "Version", libraryVersion()});
  }
  const std::string version = libraryKey() + '\\' + libraryVersion();
  all.push_back({version, "", "zelkova statistics engine"});
  all.push_back({version + "\\0\\" + width, "", path});
  all.push_back({version + "\\FLAGS", "", "0"});
  all.push_back({version + "\\HELPDIR", "", folder});
  return all;
}

LSTATUS write(HKEY root, const Entry& entry) {
  const std::wstring key = std::wstring(classesKey) + L'\\' + wide(entry.key);
  const std::wstring text = wide(entry.text);
  return RegSetKeyValueW(root, key.c_str(), entry.name.empty() ? nullptr : wide(entry.name).c_str(), REG_SZ,
                         text.c_str(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

/// Deletes a key that has no keys below it any more.
void removeWhereEmpty(HKEY classes, const std::string& key) {
  DWORD below = 0;
  HKEY opened = nullptr;
  if (RegOpenKeyExW(classes, wide(key).c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return;
  RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, &below, nullptr, nullptr, nullptr, nullptr, nullptr,
                   nullptr, nullptr);
  RegCloseKey(opened);
  if (below == 0) RegDeleteKeyW(classes, wide(key).c_str());
}

LSTATUS removeFrom(HKEY root) {
  HKEY classes = nullptr;
  LSTATUS outcome = RegOpenKeyExW(root, classesKey, 0, KEY_READ | KEY_WRITE, &classes);
  if (outcome == ERROR_FILE_NOT_FOUND) return ERROR_SUCCESS;
  if (outcome != ERROR_SUCCESS) return outcome;
  for (const std::string& tree : ownTrees()) {
    const LSTATUS removed = RegDeleteTreeW(classes, wide(tree).c_str());
    if (removed != ERROR_SUCCESS && removed != ERROR_FILE_NOT_FOUND) outcome = removed;
  }
  const std::string version = libraryKey() + '\\' + libraryVersion();
  removeWhereEmpty(classes, version + "\\0");
  HKEY languages = nullptr;
  if (RegOpenKeyExW(classes, wide(version + "\\0").c_str(), 0, KEY_READ, &languages) == ERROR_SUCCESS) {
    RegCloseKey(languages);  // the other width is still registered, under the same program ids
  } else {
    for (const Class& c : Catalogue::get().classes()) {
      RegDeleteTreeW(classes, wide(identities::programId(c.name)).c_str());
    }
    RegDeleteTreeW(classes, wide(version).c_str());
    removeWhereEmpty(classes, libraryKey());
  }
  RegCloseKey(classes);
  return outcome;
}

LSTATUS writeTo(HKEY root) {
  for (const Entry& entry : entries()) {
    if (const LSTATUS outcome = write(root, entry); outcome != ERROR_SUCCESS) {
      removeFrom(root);
      return outcome;
    }
  }
  return ERROR_SUCCESS;
}

}  // namespace

HRESULT registerServer() {
  LSTATUS outcome = writeTo(HKEY_LOCAL_MACHINE);
  if (outcome == ERROR_ACCESS_DENIED) {
    outcome = writeTo(HKEY_CURRENT_USER);
  } else if (outcome == ERROR_SUCCESS) {
    removeFrom(HKEY_CURRENT_USER);  // an earlier one for the user alone would hide this one
  }
  return outcome == ERROR_SUCCESS ? S_OK : SELFREG_E_CLASS;
}

HRESULT unregisterServer() {
  const LSTATUS user = removeFrom(HKEY_CURRENT_USER);
  const LSTATUS machine = removeFrom(HKEY_LOCAL_MACHINE);
  // A user without rights to the machine's entries has none of them to remove.
  const bool done = user == ERROR_SUCCESS && (machine == ERROR_SUCCESS || machine == ERROR_ACCESS_DENIED);
  return done ? S_OK : SELFREG_E_CLASS;
}

}  // namespace zelkova
