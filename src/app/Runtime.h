#pragma once
// The runtime conversions the program's logic is written against: reading a number from
// the start of a text, Boolean texts, rounding, number formats and the random generator.

#include <QString>
#include <optional>

namespace cantovel {

// Boolean state kept as a 16-bit integer in which True is -1.
using VBool = qint16;
constexpr VBool VTrue = -1;
constexpr VBool VFalse = 0;
inline VBool toVBool(bool b) {
    return b ? VTrue : VFalse;
}

// The number at the start of a text: blanks are passed over, a sign, digits, one decimal
// point and an exponent are read, "&H"/"&O" prefixes read hexadecimal and octal; anything
// else ends it. "9pt" gives 9, "x" gives 0.
double Val(const QString& text);

// Text to Boolean: "True" and "False" in any case, or any number (non-zero is True).
// Anything else is a conversion error: nothing is returned.
std::optional<bool> CBool(const QString& text);
// Boolean to text: "True" or "False".
QString CStr(bool value);

// Rounds to the nearest integer, halves to the even neighbour (2.5 -> 2, 3.5 -> 4).
// Past the 64-bit range it stops at the nearer end, and not-a-number gives 0.
qint64 CInt(double value);
// The largest integer not above the value (-1.5 -> -2), with the same ends as CInt.
qint64 Int(double value);

// The checked conversions to the runtime's narrow integer types, rounding as CInt does.
// A value out of the type's range (or not a number) raises the overflow error: nothing
// is returned, and under the continue-at-next-statement rule the caller passes over the
// statement that needed it.
std::optional<quint8> CByte(double value);
std::optional<qint16> CInt16(double value);
std::optional<qint32> CLng(double value);

// Formats a number with a pattern of digit places: "0" a digit always shown, "#" a digit
// shown only when significant, "." the decimal point; any other character is copied.
// Halves round away from zero in decimal, on the value's shortest decimal form, so every
// 32-bit integer and 2.675 ("0.00" -> "2.68") read as written. Examples: "000" 5 -> "005",
// "0.00 MB" 1.5 -> "1.50 MB".
QString Format(double value, const QString& pattern);

// Upper-case hexadecimal text of a non-negative number, without prefix.
QString Hex(quint64 value);

// Uniform numbers in [0, 1). Randomize reseeds from the clock (or a given seed).
double Rnd();
void Randomize();
void Randomize(quint64 seed);

}  // namespace cantovel
