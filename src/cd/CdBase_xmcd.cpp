// The record half of CdBase: a CDDB read answer into the properties, and the properties
// back into an xmcd submission.
#include <cmath>

#include "app/Runtime.h"
#include "cd/CdBase.h"
#include "cd/CdBase_Code.h"

namespace cantovel {

namespace {
const QString kCrLf = QStringLiteral("\r\n");

QString trimLeftBlanks(QString s) {
    qsizetype i = 0;
    while (i < s.size() && s[i] == QLatin1Char(' ')) ++i;
    return s.mid(i);
}

QString trimRightBlanks(QString s) {
    qsizetype n = s.size();
    while (n > 0 && s[n - 1] == QLatin1Char(' ')) --n;
    return s.left(n);
}
}  // namespace

QString CdBase::ParseReadResponse(const QString& answer) {
    if (answer.startsWith(QLatin1String("600"))) return QStringLiteral("600 Timeout");
    // The second word of the code line: a three-digit code and one blank stand before it.
    const qsizetype blank = answer.indexOf(QLatin1Char(' '), 4);
    Category = blank < 0 ? answer.mid(4) : answer.mid(4, blank - 4);

    // The keys are taken in this order from a text that shrinks behind each of them.
    QStringView text(answer);
    const double rev = Val(cantovel::PullData(text, QStringLiteral("# Revision:")));
    if (FitsInt16(rev)) DataRev = qint16(CInt(rev));
    Title = cantovel::PullData(text, QStringLiteral("DTITLE="));
    const qsizetype slash = Title.indexOf(QLatin1Char('/'));
    if (slash >= 0) {
        // The character after the slash is taken to be a blank and skipped.
        CdTitle = trimLeftBlanks(Title.mid(slash + 2));
        Artist = trimRightBlanks(Title.left(slash));
    } else {
        CdTitle = Title;
        Artist = Title;
    }
    int titles = 0;
    for (QString key = QStringLiteral("TTITLE0="); text.contains(key);
         key = QStringLiteral("TTITLE%1=").arg(++titles)) {
        const QString name = cantovel::PullData(text, key);
        if (titles + 1 <= 100) songNames_[titles + 1] = name;
    }
    Tracks = qint16(std::min(titles, 32767));
    ExtData = cantovel::PullData(text, QStringLiteral("EXTD="));
    int extended = 0;
    for (QString key = QStringLiteral("EXTT0="); text.contains(key);
         key = QStringLiteral("EXTT%1=").arg(++extended)) {
        const QString ext = cantovel::PullData(text, key);
        if (extended + 1 <= 100) extTrackData_[extended + 1] = ext;
    }
    PlayOrder = cantovel::PullData(text, QStringLiteral("PLAYORDER="));

    // The names listed are as many as the EXTT keys, which a well-formed record matches.
    QStringList lines{Title, QString::number(Tracks)};
    for (int i = 1; i <= extended && i <= 100; ++i) lines << songNames_[i];
    return lines.join(kCrLf);
}

QString CdBase::SongName(int track) const {
    return track >= 1 && track <= Tracks && track <= 100 ? songNames_[track] : QString();
}

void CdBase::SetSongName(int track, const QString& text) {
    if (track >= 0 && track <= 100) songNames_[track] = text;
}

QString CdBase::GetExtTrackData(int track) const {
    return track >= 0 && track <= 100 ? extTrackData_[track] : QString();
}

void CdBase::SetExtTrackData(int track, const QString& text) {
    if (track >= 0 && track <= 100) extTrackData_[track] = text;
}

QString CdBase::CheckSubmitData() {
    if (DataRev < 1) return QStringLiteral("Invalid DataRev number: ") + QString::number(DataRev);
    if (appName_.isEmpty()) return QStringLiteral("Missing AppName");
    if (revision_.isEmpty()) return QStringLiteral("Missing Revision");
    if ((CdTitle.isEmpty() || Artist.isEmpty()) && Title.isEmpty())
        return QStringLiteral("Missing Title");
    const int count = MMControl1()->Tracks();
    for (int i = 1; i <= count; ++i)
        if (SongName(i).isEmpty())
            return QStringLiteral("Missing song name on song: ") + QString::number(i);
    return QStringLiteral("OK");
}

QString CdBase::SubmitString() {
    const QString check = CheckSubmitData();
    if (check != QLatin1String("OK")) return QStringLiteral("Error: ") + check;
    const QString id = computeDiscId();
    MciDevice& mci = *MMControl1();
    const int count = mci.Tracks();
    QStringList lines{QStringLiteral("# xmcd"), QStringLiteral("#"),
                      QStringLiteral("# Track frame offsets:")};
    qint64 lastStart = 0, lastLength = 0;
    for (int i = 1; i <= count; ++i) {
        mci.setTrack(i);
        lastStart = MsfToFrames(mci.TrackPosition());
        lastLength = MsfToFrames(mci.TrackLength());
        lines << QStringLiteral("# ") + QString::number(lastStart);
    }
    const qint64 seconds = CInt(double(lastStart + lastLength + 1) / 75.0);
    lines << QStringLiteral("#")
          << QStringLiteral("# Disc length: ") + QString::number(seconds) +
                 QStringLiteral(" Seconds")
          << QStringLiteral("#") << QStringLiteral("# Revision: ") + QString::number(DataRev)
          << QStringLiteral("# Submitted via: ") + appName_ + QLatin1Char(' ') + revision_
          << QStringLiteral("#") << QStringLiteral("DISCID=") + id
          << QStringLiteral("DTITLE=") + (!Artist.isEmpty() && !CdTitle.isEmpty()
                                              ? Artist + QStringLiteral(" / ") + CdTitle
                                              : Title);
    for (int i = 0; i < count; ++i) lines << QStringLiteral("TTITLE%1=").arg(i) + SongName(i + 1);
    lines << QStringLiteral("EXTD=") + ExtData;
    for (int i = 0; i < count; ++i)
        lines << QStringLiteral("EXTT%1=").arg(i) + GetExtTrackData(i + 1);
    lines << QStringLiteral("PLAYORDER=") + PlayOrder;
    return lines.join(kCrLf) + kCrLf;
}

}  // namespace cantovel
