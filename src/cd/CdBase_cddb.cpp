// The protocol half of CdBase: one connection per operation, greeting, question, answer
// and quit, each wait bounded by Timer1 while events go on running.

#include <limits>

#include "app/Runtime.h"
#include "cd/CdBase.h"
#include "cd/CdBase_Code.h"
#include "cd/frmCDDBMatches.h"
#include "platform/clock/Clock.h"
#include "platform/msgbox/MsgBox.h"

namespace cantovel {

namespace {
const QString kCrLf = QStringLiteral("\r\n");
const QString kDot = QStringLiteral(".");
const QString kNone;
const QString kTimeout = QStringLiteral("600 Timeout");
const QString kReadTimeout = QStringLiteral("Timed out waiting for read responce");
}  // namespace

bool CdBase::exchange(const QString& text, const QString* terminator,
                      const QString& timeoutMessage) {
    if (!text.isEmpty()) {
        emit DataSent(text, int(text.size()));
        Winsock1.SendData(text);
    }
    buffer_.clear();
    if (terminator) terminator_ = *terminator;
    waiting_ = true;
    timedOut_ = false;
    Timer1.setEnabled(true);
    // The object may go with its window while events run.
    QPointer<CdBase> self(this);
    const auto over = [&] { return !self || !waiting_ || timedOut_; };
    while (!over()) Clock::get().wait(std::numeric_limits<int>::max(), over);
    if (!self) return false;
    Timer1.setEnabled(false);
    if (!timedOut_) return true;
    MsgBoxShow(timeoutMessage);
    return false;
}

void CdBase::Winsock1_DataArrival() {
    const QString data = Winsock1.GetData();
    if (data.isEmpty()) return;
    if (terminator_.isEmpty()) {
        waiting_ = false;
        buffer_ = data;
    } else {
        buffer_ += data;
        if (buffer_.endsWith(QStringLiteral("\r\n.\r\n"))) {
            waiting_ = false;
            terminator_.clear();
        }
    }
    emit DataSent(data, int(data.size()));
}

void CdBase::Winsock1_Close() {
    Winsock1.Close();
}

void CdBase::Timer1_Timer() {
    Winsock1.Close();
    emit DataSent(QStringLiteral("Timeout"), 7);
    timedOut_ = true;
}

bool CdBase::ConnectToServer() {
    if (Winsock1.State() != Winsock::sckClosed) return false;
    // CANTOVEL_CDDB_SERVER ("host:port") stands in for the public server, for trials
    // against a server of one's own.
    const QStringList own = qEnvironmentVariable("CANTOVEL_CDDB_SERVER").split(QLatin1Char(':'));
    if (Server.isEmpty()) Server = own.value(0).isEmpty() ? DefaultServer : own.value(0);
    if (Port == 0) Port = qint16(own.value(1).toShort()) ? own.value(1).toShort() : qint16(8880);
    Winsock1.RemoteHost = Server;
    Winsock1.RemotePort = Port;
    Winsock1.Connect();
    const QString line = QStringLiteral("Connecting to: ") + Server + QStringLiteral(" Port: ") +
                         QString::number(Port) + kCrLf;
    emit DataSent(line, int(line.size()));
    return exchange({}, nullptr, QStringLiteral("Timed out waiting to connect"));
}

bool CdBase::SendHello() {
    bool missing = false;
    if (email_.isEmpty()) {
        MsgBoxShow(QStringLiteral("Need an email address"));
        missing = true;
    }
    if (hostName_.isEmpty()) {
        MsgBoxShow(QStringLiteral("Need a HostName"));
        missing = true;
    }
    if (missing || Winsock1.State() != Winsock::sckConnected) return false;
    return exchange(QStringLiteral("cddb hello ") + email_ + QLatin1Char(' ') + hostName_ +
                        QLatin1Char(' ') + appName_ + QLatin1Char(' ') + revision_ + kCrLf,
                    nullptr, QStringLiteral("Timed out waiting for hello responce"));
}

QString CdBase::SendQuery(const QString& query) {
    QString text = query;
    if (text.isEmpty()) {
        if (cdid_.isEmpty()) cdid_ = computeDiscId();
        QStringList starts;
        for (int i = 1; i <= Tracks && i <= 100; ++i)
            starts << QString::number(trackOffsets_[i].frames());
        text = QStringLiteral("cddb query ") + cdid_ + QLatin1Char(' ') + QString::number(Tracks) +
               QLatin1Char(' ') + starts.join(QLatin1Char(' ')) + QLatin1Char(' ') +
               QString::number(DiscLength) + kCrLf;
    }
    if (!exchange(text, nullptr, QStringLiteral("Timed out waiting for query responce")))
        return kTimeout;
    return buffer_;
}

QString CdBase::SendRead(const QString& category, const QString& discId) {
    if (!exchange(QStringLiteral("cddb read ") + category + QLatin1Char(' ') + discId + kCrLf,
                  &kDot, kReadTimeout))
        return kTimeout;
    return buffer_;
}

QString CdBase::SendLscat() {
    if (!exchange(QStringLiteral("cddb lscat") + kCrLf, &kDot, kReadTimeout)) return kTimeout;
    return buffer_;
}

QString CdBase::SendSitesRequest() {
    if (!exchange(QStringLiteral("sites") + kCrLf, &kDot, kReadTimeout)) return kTimeout;
    return buffer_;
}

QString CdBase::SendMotdRequest() {
    if (!exchange(QStringLiteral("motd") + kCrLf, &kDot, kReadTimeout)) return {};
    return buffer_;
}

void CdBase::SendQuit() {
    if (Winsock1.State() != Winsock::sckConnected) return;
    const QString text = QStringLiteral("quit") + kCrLf;
    emit DataSent(text, int(text.size()));
    Winsock1.SendData(text);
    buffer_.clear();
}

void CdBase::cddbSend(const QString& text) {
    if (Winsock1.State() != Winsock::sckConnected) ConnectToServer();
    if (!text.isEmpty() && Winsock1.State() == Winsock::sckConnected) {
        Winsock1.SendData(text);
        buffer_.clear();
    }
}

QString CdBase::GetCddb() {
    cdid_ = computeDiscId();
    return lookUp({});
}

QString CdBase::GetCddbUseQueryString(QString& query) {
    query = QStringLiteral("cddb query ") + query + kCrLf;
    return lookUp(query);
}

QString CdBase::lookUp(const QString& query) {
    QPointer<CdBase> self(this);
    if (!ConnectToServer()) return QStringLiteral("000 Failure to Connect");
    if (!self) return {};
    if (!SendHello()) {
        if (self) SendQuit();
        return QStringLiteral("431 Handshake not successful, closing connection");
    }
    const QString answer = SendQuery(query);
    if (!self) return {};
    const int code = int(Val(answer.left(3)));
    QString result;
    switch (code) {
        case 200:
        case 211: {
            if (code == 200) {
                SplitMatchLine(answer);
            } else {
                CloseMatchDecode(answer);
                MatchDiscId.clear();
                MatchCategory.clear();
                MatchTitle.clear();
                if (UseFirstMatch) {
                    MatchCategory = CloseMatches[1].Category;
                    MatchDiscId = CloseMatches[1].DiscId;
                    MatchTitle = CloseMatches[1].Title;
                } else {
                    frmCDDBMatches::choose(CloseMatchWinLeft, CloseMatchWinTop);
                    if (!self) return {};
                }
            }
            const QString record = SendRead(MatchCategory, MatchDiscId);
            if (!self) return {};
            result = ParseReadResponse(record);
            SendQuit();
            return result;
        }
        case 202:
            MsgBoxShow(QStringLiteral("202 No exact match"));
            break;
        case 403:
            MsgBoxShow(QStringLiteral("403 Database entry Is corrupt"));
            break;
        case 409:
            MsgBoxShow(QStringLiteral("409 No handshake"));
            break;
        case 600:
            return {};  // the timer has closed the socket already
        default:
            break;
    }
    if (self) SendQuit();
    return {};
}

QString CdBase::CloseMatchDecode(const QString& text) {
    QStringView rest = cantovel::RemoveTopLine(QStringView(text));
    CloseMatchCount = 0;
    int count = 0;
    while (rest.size() >= 4) {
        ++count;
        if (count <= 32767) CloseMatchCount = qint16(count);
        const qsizetype cr = rest.indexOf(QLatin1Char('\r'));
        QStringView line = cr < 0 ? rest : rest.left(cr + 1);
        if (count <= 100) {
            CloseMatch& row = CloseMatches[count];
            const qsizetype b1 = line.indexOf(QLatin1Char(' '));
            row.Category = (b1 < 0 ? line : line.left(b1)).toString();
            line = b1 < 0 ? QStringView() : line.mid(b1 + 1);
            const qsizetype b2 = line.indexOf(QLatin1Char(' '));
            row.DiscId = (b2 < 0 ? line : line.left(b2)).toString();
            row.Title = (b2 < 0 ? QStringView() : line.mid(b2 + 1)).toString();
        }
        rest = cantovel::RemoveTopLine(rest);
    }
    return {};
}

qint16 CdBase::GetSites() {
    return listRequest(&CdBase::SendSitesRequest, &CdBase::parseSites, Sites);
}

qint16 CdBase::Getlscat() {
    return listRequest(&CdBase::SendLscat, &CdBase::parseLscat, Categories);
}

qint16 CdBase::listRequest(QString (CdBase::*send)(), QString (CdBase::*parse)(const QString&),
                           const qint16& rows) {
    QPointer<CdBase> self(this);
    qint16 count = 0;
    // Whatever happened on the way, a connection still up gets its quit: also one a
    // failed connection step found already open.
    if (ConnectToServer() && self && SendHello() && self) {
        const QString answer = (this->*send)();
        if (self && (this->*parse)(answer).startsWith(QLatin1String("210"))) count = rows;
    }
    if (self) SendQuit();
    return count;
}

QString CdBase::GetMotd() {
    QPointer<CdBase> self(this);
    QString result = QStringLiteral("Error");
    if (ConnectToServer() && self && SendHello() && self) {
        const QString answer = SendMotdRequest();
        result.clear();
        // Asked twice, and the second answer kept: so it has always been.
        if (self && answer.startsWith(QLatin1String("210"))) result = SendMotdRequest();
    }
    if (self) SendQuit();
    return result;
}

QString CdBase::GetMyHostName() const {
    return Winsock1.LocalHostName();
}

QString CdBase::parseLscat(const QString& answer) {
    if (answer.left(3) != QLatin1String("210")) return QStringLiteral("401");
    QStringView rest = cantovel::RemoveTopLine(QStringView(answer));
    int count = 0;
    while (!rest.isEmpty() && rest.front() != QLatin1Char('.')) {
        ++count;
        if (count <= 50) categories_[count] = TopLine(rest).toString();
        rest = cantovel::RemoveTopLine(rest);
    }
    Categories = qint16(std::min(count, 32767));
    return QStringLiteral("210 Okay category list follows");
}

QString CdBase::parseSites(const QString& answer) {
    if (answer.left(3) == QLatin1String("401"))
        return QStringLiteral("401 No site information available.");
    if (answer.left(3) != QLatin1String("210")) return answer;
    QStringView rest = cantovel::RemoveTopLine(QStringView(answer));
    int count = 0;
    while (!rest.isEmpty() && rest.front() != QLatin1Char('.')) {
        ++count;
        Site site;
        QStringView t = rest;
        const qsizetype blank = t.indexOf(QLatin1Char(' '));
        site.Address = (blank < 0 ? t : t.left(blank)).toString();
        t = blank < 0 ? QStringView() : t.mid(blank + 1);
        // The port ends at the next blank from the second place on.
        const qsizetype portEnd = t.size() > 1 ? t.indexOf(QLatin1Char(' '), 1) : -1;
        const double port = Val((portEnd < 0 ? t : t.left(portEnd)).toString());
        if (FitsInt16(port)) site.Port = qint16(std::lround(port));
        // Three characters go, whatever the port's length.
        t = t.mid(std::min<qsizetype>(3, t.size()));
        const qsizetype end = t.size() > 1 ? t.indexOf(kCrLf, 1) : -1;
        site.Location = (end < 0 ? t : t.left(end)).toString();
        if (count <= 100) sites_[count] = site;
        rest = cantovel::RemoveTopLine(rest);
    }
    Sites = qint16(std::min(count, 32767));
    return QStringLiteral("210 Ok, site information follows.");
}

QString CdBase::SiteAddress(int row) const {
    return row >= 1 && row <= Sites && row <= 100 ? sites_[row].Address : QString();
}

qint16 CdBase::SitePort(int row) const {
    return row >= 1 && row <= Sites && row <= 100 ? sites_[row].Port : 0;
}

QString CdBase::SiteLocation(int row) const {
    return row >= 1 && row <= Sites && row <= 100 ? sites_[row].Location : QString();
}

QString CdBase::GetCategory(int row) const {
    return row >= 1 && row <= Categories && row <= 50 ? categories_[row] : QString();
}

}  // namespace cantovel
