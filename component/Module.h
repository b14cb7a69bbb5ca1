#pragma once

#include <atomic>
#include <string>

#include "component/automation.h"

namespace zelkova {

/// The loaded library. It may be unloaded when none of its objects lives and nobody has locked it.
class Module {
 public:
  /// Counts one object or one lock for as long as it lives.
  class Use {
   public:
    Use() { ++uses; }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;
    ~Use() { --uses; }
  };

  static void lock() { ++uses; }
  static void unlock() { --uses; }
  static bool isUsed() { return uses != 0; }

  /// The full path of the library's file.
  static std::wstring path();

  /// The description of an interface, out of the type library in the file's resources.
  static HRESULT typeInfo(const std::wstring& interfaceId, ITypeInfo** info);

  static HINSTANCE instance;  ///< set when the library is loaded

 private:
  inline static std::atomic<long> uses{0};
};

}  // namespace zelkova
