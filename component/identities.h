#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The identities under which automation clients know the library. They are made from the names alone, so a
/// client that was compiled against one build works with every other.
namespace zelkova::identities {

/// An identifier in the form {8-4-4-4-12}, in capitals, by RFC 4122's version 5 (SHA-1 of the name).
std::string ofLibrary();
std::string ofClass(std::string_view className);
std::string ofInterface(std::string_view className);

/// The program id of a class: "zelkova.yHTest".
std::string programId(std::string_view className);

/// The default interface of a class: "_yHTest".
std::string interfaceName(std::string_view className);

/// The dispatch id of a method, from 1 to 2^30, whatever the case of its name: FNV-1a, folded. A test sees to
/// it that no two methods of a class share one.
std::int32_t ofMethod(std::string_view methodName);

/// Of the type library; clients ask for it when they load one.
inline constexpr int majorVersion = 0;
inline constexpr int minorVersion = 1;

}  // namespace zelkova::identities
