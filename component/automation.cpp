#include "component/automation.h"

#include <new>

namespace zelkova {

OwnedVariant OwnedVariant::flag(bool value) noexcept {
  OwnedVariant result;
  result.vt = VT_BOOL;
  result.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return result;
}

OwnedVariant OwnedVariant::integer(std::int16_t value) noexcept {
  OwnedVariant result;
  result.vt = VT_I2;
  result.iVal = value;
  return result;
}

OwnedVariant OwnedVariant::longInteger(std::int32_t value) noexcept {
  OwnedVariant result;
  result.vt = VT_I4;
  result.lVal = value;
  return result;
}

OwnedVariant OwnedVariant::text(std::string_view utf8) {
  OwnedVariant result;
  result.bstrVal = newText(utf8);
  result.vt = VT_BSTR;
  return result;
}

OwnedVariant OwnedVariant::object(IDispatch* held) noexcept {
  OwnedVariant result;
  result.vt = VT_DISPATCH;
  result.pdispVal = held;
  if (held != nullptr) held->AddRef();
  return result;
}

OwnedVariant OwnedVariant::missing() noexcept {
  OwnedVariant result;
  result.vt = VT_ERROR;
  result.scode = DISP_E_PARAMNOTFOUND;
  return result;
}

OwnedVariant OwnedVariant::array(SAFEARRAY* owned, VARTYPE elementType) noexcept {
  OwnedVariant result;
  result.vt = static_cast<VARTYPE>(VT_ARRAY | elementType);
  result.parray = owned;
  return result;
}

bool isMissing(const VARIANT& value) {
  if (value.vt == VT_ERROR) return value.scode == DISP_E_PARAMNOTFOUND;
  if (value.byref == nullptr) return false;
  if (value.vt == (VT_BYREF | VT_ERROR)) return *value.pscode == DISP_E_PARAMNOTFOUND;
  // One level: clients hand on their own argument, which is a variant.
  return value.vt == (VT_BYREF | VT_VARIANT) && value.pvarVal->vt == VT_ERROR &&
         value.pvarVal->scode == DISP_E_PARAMNOTFOUND;
}

std::wstring wide(std::string_view utf8) {
  if (utf8.empty()) return {};
  const int length = static_cast<int>(utf8.size());
  std::wstring result(
      static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0)), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, result.data(), static_cast<int>(result.size()));
  return result;
}

std::string utf8(std::wstring_view text) {
  if (text.empty()) return {};
  const int length = static_cast<int>(text.size());
  std::string result(static_cast<std::size_t>(
                         WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr)),
                     '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), static_cast<int>(result.size()),
                      nullptr, nullptr);
  return result;
}

std::string utf8(BSTR text) {
  if (text == nullptr) return {};
  return utf8(std::wstring_view(text, SysStringLen(text)));
}

BSTR newText(std::string_view utf8) {
  const std::wstring text = wide(utf8);
  BSTR result = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (result == nullptr) throw std::bad_alloc();
  return result;
}

std::string systemText(HRESULT result) {
  wchar_t text[512];
  DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                     static_cast<DWORD>(result), 0, text, static_cast<DWORD>(std::size(text)), nullptr);
  while (length > 0 && (text[length - 1] == L'\r' || text[length - 1] == L'\n')) --length;
  if (length > 0) return utf8(std::wstring_view(text, length));
  char code[16];
  std::snprintf(code, sizeof code, "%08lX", static_cast<unsigned long>(result));
  return std::string("error ") + code;
}

}  // namespace zelkova
