#include "cd/CdBase_Code.h"

#include <cmath>

#include "app/Runtime.h"

namespace cantovel {

std::array<CloseMatch, 101> CloseMatches;
qint16 CloseMatchCount = 0;
QString MatchCategory, MatchDiscId, MatchTitle;

namespace {
const QString kCrLf = QStringLiteral("\r\n");

// The text up to the first blank, and the rest behind it; no blank: all of it, and nothing.
QStringView takeWord(QStringView& text) {
    const qsizetype blank = text.indexOf(QLatin1Char(' '));
    if (blank < 0) {
        QStringView word = text;
        text = {};
        return word;
    }
    QStringView word = text.left(blank);
    text = text.mid(blank + 1);
    return word;
}
}  // namespace

QStringView RemoveTopLine(QStringView text) {
    const qsizetype at = text.indexOf(kCrLf);
    return at < 0 ? QStringView() : text.mid(at + 2);
}

QString RemoveTopLine(const QString& text) {
    return RemoveTopLine(QStringView(text)).toString();
}

QStringView TopLine(QStringView text) {
    const qsizetype at = text.indexOf(kCrLf);
    return at < 0 ? text : text.left(at);
}

QString PullData(QStringView& text, const QString& key) {
    QString result;
    for (qsizetype p = text.indexOf(key); p >= 0; p = text.indexOf(key)) {
        text = text.mid(p + 1);
        const QStringView line = TopLine(text);
        result += line.right(std::max<qsizetype>(0, line.size() - key.size() + 1));
        text = RemoveTopLine(text);
    }
    return result;
}

QString PullData(QString& text, const QString& key) {
    if (!text.contains(key)) return {};
    QStringView view(text);
    const QString result = PullData(view, key);
    text = view.toString();
    return result;
}

QString NewLineFix(QString& text) {
    text.replace(QStringLiteral("\\n"), kCrLf);
    return text;
}

QString FixedHex(quint32 value, int width) {
    const QString hex = Hex(value);
    return hex.size() >= width ? hex.right(width) : hex.rightJustified(width, QLatin1Char('0'));
}

void SplitMatchLine(const QString& line) {
    QStringView rest(line);
    takeWord(rest);
    MatchCategory = takeWord(rest).toString();
    MatchDiscId = takeWord(rest).toString();
    MatchTitle = rest.toString();
}

bool FitsInt16(double value) {
    return std::isfinite(value) && std::round(value) >= -32768 && std::round(value) <= 32767;
}

}  // namespace cantovel
