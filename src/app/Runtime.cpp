#include "app/Runtime.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "platform/Components.h"
#include "platform/clock/Clock.h"

namespace cantovel {

double Val(const QString& text) {
    // Blanks (spaces, tabs, line feeds) are skipped anywhere in the number.
    QString s;
    s.reserve(text.size());
    for (QChar c : text)
        if (c != u' ' && c != u'\t' && c != u'\n' && c != u'\r') s.append(c);

    if (s.size() >= 2 && s[0] == u'&') {
        const QChar kind = s[1].toUpper();
        int base = kind == u'H' ? 16 : kind == u'O' ? 8 : 0;
        int start = base ? 2 : 1;
        if (!base) base = 8;  // "&17" is octal too
        qint64 v = 0;
        // Past 64 bits the digits still count, in floating point.
        double wide = 0;
        bool overflow = false;
        int i = start;
        for (; i < s.size(); ++i) {
            int d = s[i].isDigit() ? s[i].digitValue()
                    : (base == 16 && s[i].toUpper() >= u'A' && s[i].toUpper() <= u'F')
                        ? s[i].toUpper().unicode() - 'A' + 10
                        : -1;
            if (d < 0 || d >= base) break;
            overflow = overflow || v > (std::numeric_limits<qint64>::max() - d) / base;
            if (!overflow) v = v * base + d;
            wide = wide * base + d;
        }
        if (overflow) return wide;
        // Hexadecimal of up to four digits is a 16-bit signed value, up to eight 32-bit.
        if (base == 16 && i - start <= 4 && v > 0x7FFF)
            v -= 0x10000;
        else if (base == 16 && i - start <= 8 && v > 0x7FFFFFFF)
            v -= 0x100000000LL;
        return double(v);
    }

    int i = 0;
    QString num;
    if (i < s.size() && (s[i] == u'+' || s[i] == u'-')) num.append(s[i++]);
    bool digits = false, point = false;
    for (; i < s.size(); ++i) {
        if (s[i].isDigit() && s[i].unicode() < 128) {
            num.append(s[i]);
            digits = true;
        } else if (s[i] == u'.' && !point) {
            num.append(u'.');
            point = true;
        } else {
            break;
        }
    }
    if (!digits) return 0.0;
    if (i < s.size() && (s[i] == u'e' || s[i] == u'E' || s[i] == u'd' || s[i] == u'D')) {
        int j = i + 1;
        QString exp = QStringLiteral("e");
        if (j < s.size() && (s[j] == u'+' || s[j] == u'-')) exp.append(s[j++]);
        int k = j;
        while (k < s.size() && s[k].isDigit() && s[k].unicode() < 128) exp.append(s[k++]);
        if (k > j) num += exp;
    }
    return num.toDouble();
}

std::optional<bool> CBool(const QString& text) {
    const QString t = text.trimmed();
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) return true;
    if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) return false;
    bool ok = false;
    double v = t.toDouble(&ok);
    if (ok) return v != 0.0;
    return std::nullopt;
}

QString CStr(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

namespace {
// A whole number as a 64-bit integer, held to the ends of its range.
qint64 toInt64(double whole) {
    if (std::isnan(whole)) return 0;
    // 2^63 is the first double past the range; the cast below is then defined.
    if (whole >= 9223372036854775808.0) return std::numeric_limits<qint64>::max();
    if (whole < -9223372036854775808.0) return std::numeric_limits<qint64>::min();
    return qint64(whole);
}

template <class T>
std::optional<T> checked(double value) {
    const double r = std::nearbyint(value);
    if (!(r >= double(std::numeric_limits<T>::min()) && r <= double(std::numeric_limits<T>::max())))
        return std::nullopt;
    return T(r);
}
}  // namespace

qint64 CInt(double value) {
    return toInt64(std::nearbyint(value));
}

qint64 Int(double value) {
    return toInt64(std::floor(value));
}

std::optional<quint8> CByte(double value) {
    return checked<quint8>(value);
}
std::optional<qint16> CInt16(double value) {
    return checked<qint16>(value);
}
std::optional<qint32> CLng(double value) {
    return checked<qint32>(value);
}

namespace {
// The digits of a non-negative value times 10^places, rounded to a whole number, halves
// up, as text without leading zeros ("0" for nothing).
QString decimalDigits(double value, int places) {
    // "d.dddddddddddddde±x": 15 significant digits and the power of ten.
    const QString sci = QString::number(value, 'e', 14);
    const qsizetype e = sci.indexOf(u'e');
    QString mantissa = sci.left(e);
    mantissa.remove(u'.');
    const int exponent = sci.mid(e + 1).toInt();
    // The number is 0.mantissa * 10^(exponent + 1); keep the digits before the cut.
    const int keep = exponent + 1 + places;
    if (keep < 0) return QStringLiteral("0");
    QString kept = mantissa.left(keep);
    while (kept.size() < keep) kept += u'0';
    const bool roundUp = keep < mantissa.size() && mantissa[keep] >= u'5';
    if (roundUp) {
        qsizetype i = kept.size() - 1;
        for (; i >= 0 && kept[i] == u'9'; --i) kept[i] = u'0';
        if (i >= 0)
            kept[i] = QChar(kept[i].unicode() + 1);
        else
            kept.prepend(u'1');
    }
    while (kept.size() > 1 && kept.front() == u'0') kept.remove(0, 1);
    return kept.isEmpty() ? QStringLiteral("0") : kept;
}
}  // namespace

QString Format(double value, const QString& pattern) {
    // Split the pattern into what comes before the first digit place, the digit places
    // (integer and fraction) and what follows the last.
    int first = -1, last = -1;
    for (int i = 0; i < pattern.size(); ++i)
        if (pattern[i] == u'0' || pattern[i] == u'#' || pattern[i] == u'.') {
            if (first < 0) first = i;
            last = i;
        }
    if (first < 0) return pattern;
    const QString prefix = pattern.left(first);
    const QString suffix = pattern.mid(last + 1);
    const QString places = pattern.mid(first, last - first + 1);
    const int dot = places.indexOf(u'.');
    const QString intPart = dot < 0 ? places : places.left(dot);
    const QString fracPart = dot < 0 ? QString() : places.mid(dot + 1);

    int minInt = 0;
    const int firstZero = intPart.indexOf(u'0');
    if (firstZero >= 0) minInt = intPart.size() - firstZero;
    const int fracDigits = fracPart.size();
    int minFrac = 0;
    for (int i = fracPart.size() - 1; i >= 0; --i)
        if (fracPart[i] == u'0') {
            minFrac = i + 1;
            break;
        }

    const bool negative = value < 0;
    if (!std::isfinite(value)) return prefix + QString::number(value) + suffix;
    // The value's shortest decimal digits (15 significant, as the runtime shows numbers),
    // rounded at the last place shown, halves away from zero.
    QString digits = decimalDigits(std::fabs(value), fracDigits);
    const bool zero =
        std::all_of(digits.cbegin(), digits.cend(), [](QChar c) { return c == u'0'; });
    if (digits.size() <= fracDigits)
        digits = QString(fracDigits - digits.size() + 1, u'0') + digits;
    QString intDigits = digits.left(digits.size() - fracDigits);
    QString fracDigitsText = digits.right(fracDigits);
    if (intDigits == QLatin1String("0") && minInt == 0) intDigits.clear();
    while (intDigits.size() < minInt) intDigits.prepend(u'0');
    while (fracDigitsText.size() > minFrac && fracDigitsText.endsWith(u'0')) fracDigitsText.chop(1);

    QString out = prefix;
    if (negative && !zero) out += u'-';
    out += intDigits;
    if (dot >= 0 && (!fracDigitsText.isEmpty() || fracPart.isEmpty())) out += u'.' + fracDigitsText;
    if (dot >= 0 && fracPart.isEmpty()) { /* a bare point is kept, as the pattern says */
    }
    out += suffix;
    return out;
}

QString Hex(quint64 value) {
    return QString::number(value, 16).toUpper();
}

namespace {
std::mt19937_64& generator() {
    static std::mt19937_64 g(0x5EEDu);
    return g;
}
}  // namespace

double Rnd() {
    return std::uniform_real_distribution<double>(0.0, 1.0)(generator());
}

void Randomize() {
    // The clock's reading mixed with the generator's state, so two reseeds in the same
    // millisecond still differ, and virtual time in tests gives repeatable runs.
    quint64 seed = generator()();
    if (Components::hasService<Clock>())
        seed ^= quint64(Clock::get().secondsSinceMidnight() * 1000.0) * 0x9E3779B97F4A7C15ull;
    generator().seed(seed);
}

void Randomize(quint64 seed) {
    generator().seed(seed);
}

}  // namespace cantovel
