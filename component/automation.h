#pragma once

#include <windows.h>
// windows.h first
#include <oleauto.h>

#include <string>
#include <string_view>
#include <utility>

/// What automation's own C types lack: an owner.
namespace zelkova {

/// A VARIANT that clears itself.
class OwnedVariant : public VARIANT {
 public:
  OwnedVariant() noexcept { VariantInit(this); }
  OwnedVariant(OwnedVariant&& other) noexcept : OwnedVariant() { std::swap(content(), other.content()); }
  OwnedVariant& operator=(OwnedVariant&& other) noexcept {
    std::swap(content(), other.content());
    return *this;
  }
  ~OwnedVariant() { VariantClear(this); }

  explicit OwnedVariant(double number) noexcept : OwnedVariant() {
    vt = VT_R8;
    dblVal = number;
  }
  static OwnedVariant flag(bool value) noexcept;
  static OwnedVariant integer(std::int16_t value) noexcept;
  static OwnedVariant longInteger(std::int32_t value) noexcept;
  static OwnedVariant text(std::string_view utf8);
  static OwnedVariant object(IDispatch* held) noexcept;  ///< counts its own reference
  static OwnedVariant missing() noexcept;                ///< an argument left out

  /// Takes over an array of elements of type `elementType`.
  static OwnedVariant array(SAFEARRAY* owned, VARTYPE elementType) noexcept;

  /// Gives up what it holds.
  VARIANT release() noexcept {
    const VARIANT held = *this;
    VariantInit(this);
    return held;
  }

  VARIANT& content() noexcept { return *this; }
};

/// Texts cross as UTF-16; the library's own are UTF-8. A fault in either becomes the replacement character.
std::wstring wide(std::string_view utf8);
std::string utf8(std::wstring_view text);
std::string utf8(BSTR text);  ///< a null pointer is the empty text, as everywhere in automation

/// A new BSTR; `std::bad_alloc` where there is no memory for it.
BSTR newText(std::string_view utf8);

/// The system's own words for `result`, without a line end.
std::string systemText(HRESULT result);

/// Whether a client left this argument out: here, or in a procedure of its own whose argument it hands on.
bool isMissing(const VARIANT& value);

}  // namespace zelkova
