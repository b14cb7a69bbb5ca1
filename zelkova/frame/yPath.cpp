#include "zelkova/frame/yPath.h"

#include <filesystem>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace zelkova {

namespace {

/// Its address lies in the module that holds the library.
const int anchor = 0;

std::filesystem::path modulePath() {
#ifdef _WIN32
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&anchor), &module);
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
  return path;
#else
  Dl_info info{};
  const bool found = dladdr(&anchor, &info) != 0;
  // A program that was found through the search path tells a bare name here: ask the system instead.
  if (found && std::filesystem::path(info.dli_fname).is_absolute()) return info.dli_fname;
  return std::filesystem::read_symlink("/proc/self/exe");
#endif
}

}  // namespace

std::string yPath::AppPath() const { return modulePath().parent_path().string(); }

}  // namespace zelkova
