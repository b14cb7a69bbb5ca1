#include "zelkova/frame/yPath.h"

#include <filesystem>
#include <string>

#include "zelkova/frame/Failure.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#include <sys/auxv.h>
#endif

namespace zelkova {

namespace {

/// Its address lies in the module that holds the library.
const int anchor = 0;

std::string utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::filesystem::path modulePath() {
#ifdef _WIN32
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&anchor), &module);
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
  return path;
#else
  Dl_info library{};
  Dl_info program{};
  dladdr(&anchor, &library);
  dladdr(reinterpret_cast<const void*>(getauxval(AT_PHDR)), &program);  // NOLINT(performance-no-int-to-ptr)
  // The name under which a program was started is its caller's word; a loaded library's name is the loader's.
  if (library.dli_fbase == program.dli_fbase) return std::filesystem::read_symlink("/proc/self/exe");
  return std::filesystem::canonical(library.dli_fname);
#endif
}

}  // namespace

std::string yPath::AppPath() const {
  try {
    return utf8(modulePath().parent_path());
  } catch (const std::filesystem::filesystem_error& error) {
    raise(FailureNumber::Internal, error.what());
  }
}

}  // namespace zelkova
