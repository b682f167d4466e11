#pragma once
// The CDDB client's small text helpers, and the close-match table an inexact answer fills
// and the match window chooses from.

#include <QString>
#include <QStringView>
#include <array>

namespace cantovel {

struct CloseMatch {
    QString Category, Title, DiscId;
};

// Rows count from 1; entry 0 is unused.
extern std::array<CloseMatch, 101> CloseMatches;
extern qint16 CloseMatchCount;
// The row the next read fetches.
extern QString MatchCategory, MatchDiscId, MatchTitle;

// The text after its first carriage return and line feed; empty when it has none.
QString RemoveTopLine(const QString& text);
QStringView RemoveTopLine(QStringView text);
// The text up to its first carriage return and line feed, or all of it.
QStringView TopLine(QStringView text);

// Takes every value of `key` out of `text` in order and joins them; `text` keeps only
// what stands behind the last hit. No hit: empty, and `text` as it was.
QString PullData(QString& text, const QString& key);
QString PullData(QStringView& text, const QString& key);

// Replaces each backslash-n by a carriage return and line feed, in place.
QString NewLineFix(QString& text);

// The hexadecimal text fixed to `width`: cut to its rightmost characters, or padded with
// leading zeros.
QString FixedHex(quint32 value, int width);

// "<code> <category> <disc id> <title>" into MatchCategory, MatchDiscId and MatchTitle; the
// title keeps its line end.
void SplitMatchLine(const QString& line);

// A 16-bit signed value, or nothing when the number does not fit (the assignment then
// leaves its target as it was).
bool FitsInt16(double value);

}  // namespace cantovel
