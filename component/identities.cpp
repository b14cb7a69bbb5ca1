#include "component/identities.h"

#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "zelkova/frame/numberText.h"

namespace zelkova::identities {

namespace {

/// Never to be changed: every identity hangs on it.
constexpr const char* nameSpace = "7d0f2b5e-9f43-4c1b-8a55-0c6a4d1be3a7";

std::string identity(const std::string& name) {
  const boost::uuids::name_generator_sha1 generate(boost::uuids::string_generator()(nameSpace));
  return '{' + upperCase(boost::uuids::to_string(generate(name))) + '}';
}

}  // namespace

std::string ofLibrary() { return identity("library zelkova"); }

std::string ofClass(std::string_view className) { return identity("class " + std::string(className)); }

std::string ofInterface(std::string_view className) {
  return identity("interface " + interfaceName(className));
}

std::string programId(std::string_view className) { return "zelkova." + std::string(className); }

std::string interfaceName(std::string_view className) { return "_" + std::string(className); }

std::int32_t ofMethod(std::string_view methodName) {
  std::uint32_t hash = 2166136261;
  for (const char c : upperCase(methodName)) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619;
  return static_cast<std::int32_t>(((hash >> 30) ^ (hash & 0x3FFFFFFF)) + 1);
}

}  // namespace zelkova::identities
