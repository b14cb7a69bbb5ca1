#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelkova {

/// `x` with up to 15 significant digits, in the form a spreadsheet shows: "0.1", "1234", "1E-05", "1E+99".
/// The decimal mark is a point whatever the locale.
std::string numberText(double x);

/// The number a text holds, or nothing. Blanks around it are ignored. Digits with an optional sign, decimal
/// point and exponent make a number; infinities, hexadecimal and thousands separators do not, and neither
/// does a number too large for a double. A number too small for a double is 0.
std::optional<double> numberOf(std::string_view text);

/// The number a text holds; failure 13 where it holds none.
double toNumber(std::string_view text);

/// The same, the failure naming the argument that the text came in.
double toNumber(std::string_view text, const char* argument);

/// `text` without the blanks, tabs and line ends around it.
std::string_view trimmed(std::string_view text);

/// `text` with the ASCII letters in upper case.
std::string upperCase(std::string_view text);

/// Whether two texts are the same apart from the case of ASCII letters.
bool sameIgnoringCase(std::string_view a, std::string_view b);

}  // namespace zelkova
