#include "component/idl.h"

#include <stdexcept>
#include <variant>

#include "component/identities.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {

namespace {

constexpr const char* automationTypes =
    R"(// Made from the catalogue. What follows up to the library is automation's own.
[object, uuid(00000000-0000-0000-C000-000000000046)] interface IUnknown { }
[object, uuid(00020400-0000-0000-C000-000000000046)] interface IDispatch : IUnknown { }
typedef wchar_t *BSTR;
typedef short VARIANT_BOOL;
typedef struct tagVARIANT { short vt; } VARIANT;

)";

std::string inQuotes(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

std::string bare(const std::string& identity) { return identity.substr(1, identity.size() - 2); }

std::string attributes(const std::string& identity, const std::string& help) {
  return "[uuid(" + bare(identity) + "), helpstring(" + inQuotes(help) + ")]\n";
}

const char* typeName(ValueType type) {
  switch (type) {
    case ValueType::None:
      return "void";
    case ValueType::Double:
      return "double";
    case ValueType::Integer:
      return "short";
    case ValueType::Flag:
      return "VARIANT_BOOL";
    case ValueType::Text:
      return "BSTR";
    case ValueType::Sheet:
      return "IDispatch*";
    case ValueType::Mixed:
    case ValueType::Doubles:
    case ValueType::Texts:
    case ValueType::MixedValues:
      return "VARIANT";
  }
  throw std::logic_error("a type that automation has no name for");
}

/// The default as the compiler reads it; empty where it cannot write one.
std::string defaultText(const Value& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "0xffff" : "0";
  if (const auto* text = std::get_if<std::string>(&value)) return inQuotes(*text);
  return {};
}

std::string declaration(const Argument& argument) {
  std::string result = argument.direction == Direction::In    ? "[in"
                       : argument.direction == Direction::Out ? "[out"
                                                              : "[in, out";
  std::string type = typeName(argument.type);
  if (argument.optional) {
    const std::string defaultValue = argument.isOutput() ? "" : defaultText(argument.defaultValue);
    result += ", optional";
    if (defaultValue.empty()) {
      type = "VARIANT";  // the only type that may be missing without a default
    } else {
      result += ", defaultvalue(" + defaultValue + ")";
    }
  }
  result += "] " + type;
  // An array goes by reference in both directions, so that a client's own array is never copied.
  if (argument.isOutput() || isArray(argument.type)) result += '*';
  return result + ' ' + argument.name;
}

std::string declaration(const Method& method) {
  std::string result = "      [id(" + std::to_string(identities::ofMethod(method.name)) + "), helpstring(" +
                       inQuotes(method.help) + ")]\n      " + typeName(method.result) + ' ' + method.name +
                       '(';
  for (std::size_t i = 0; i < method.arguments.size(); ++i) {
    if (i > 0) result += ", ";
    result += declaration(method.arguments[i]);
  }
  return result + ");\n";
}

std::string declaration(const Class& c) {
  const std::string interface = identities::interfaceName(c.name);
  std::string result = "  " + attributes(identities::ofInterface(c.name), c.help) + "  dispinterface " +
                       interface + "\n  {\n    properties:\n    methods:\n";
  for (const Method& method : c.methods) result += declaration(method);
  return result + "  };\n\n  " + attributes(identities::ofClass(c.name), c.help) + "  coclass " + c.name +
         " { [default] dispinterface " + interface + "; };\n\n";
}

}  // namespace

std::string interfaceDefinition(const Catalogue& catalogue) {
  std::string result = automationTypes;
  result += "[uuid(" + bare(identities::ofLibrary()) + "), version(" +
            std::to_string(identities::majorVersion) + '.' + std::to_string(identities::minorVersion) +
            "), helpstring(\"zelkova statistics engine\")]\nlibrary zelkova\n{\n"
            "  importlib(\"stdole2.tlb\");\n\n";
  for (const Class& c : catalogue.classes()) result += declaration(c);
  return result + "}\n";
}

}  // namespace zelkova
