// The CD half of CdBase: the device, the disc ID, positions and tracks.
#include "cd/CdBase.h"

#include <QDir>
#include <QFile>
#include <QtEndian>

#include "app/Runtime.h"
#include "cd/CdBase_Code.h"
#include "platform/Components.h"
#include "platform/cddrives/CdDrives.h"
#include "platform/msgbox/MsgBox.h"

namespace cantovel {

namespace {

constexpr quint32 kErrOpen = 0x80040259, kErrNoDisc = 0x8004025A;
const QString kSource = QStringLiteral("Cddb Control");

// Where no CD audio device is provided: never opens.
class NoMciDevice : public MciDevice {
  public:
    void setDeviceType(const QString& t) override { type_ = t; }
    QString deviceType() const override { return type_; }
    void setNotify(bool) override {}
    void setWait(bool) override {}
    void setShareable(bool) override {}
    void setCommand(const QString& w) override { command_ = w; }
    QString command() const override { return command_; }
    int Mode() override { return mciModeNotOpen; }
    int Tracks() override { return 0; }
    void setTrack(int t) override { track_ = t; }
    int Track() const override { return track_; }
    qint32 TrackPosition() override { return 0; }
    qint32 TrackLength() override { return 0; }
    qint32 Position() override { return 0; }
    void setFrom(qint32) override {}
    void setTo(qint32) override {}

  private:
    QString type_, command_;
    int track_ = 0;
};

int digitSum(qint64 n) {
    int sum = 0;
    for (; n > 0; n /= 10) sum += int(n % 10);
    return sum;
}

}  // namespace

const QString CdBase::DefaultServer = QStringLiteral("gnudb.gnudb.org");

CdBase::CdBase(QObject* parent) : QObject(parent), mci_(Components::create<MciDevice>()) {
    if (!mci_) mci_ = std::make_unique<NoMciDevice>();
    connect(mci_.get(), &MciDevice::StatusUpdate, this, &CdBase::statusUpdate);
    connect(&Winsock1, &Winsock::DataArrival, this, &CdBase::Winsock1_DataArrival);
    connect(&Winsock1, &Winsock::Closed, this, &CdBase::Winsock1_Close);
    connect(&Timer1, &Timer::timeout, this, &CdBase::Timer1_Timer);
}

CdBase::~CdBase() = default;

void CdBase::raise(quint32 number, const QString& text) {
    lastError_ = {number, kSource, text};
}

CdBase::Msf CdBase::split(qint32 msf) {
    return {msf & 0xFF, (msf >> 8) & 0xFF, (msf >> 16) & 0xFF};
}

void CdBase::deviceCommand(const QString& word) {
    mci_->setCommand(word);
}

int CdBase::deviceMode() {
    return mci_->Mode();
}

void CdBase::setCommand(const QString& word) {
    command_ = word;
    const QString w = word.toUpper();
    if (w == QLatin1String("OPEN")) {
        mci_->setNotify(false);
        mci_->setWait(true);
        mci_->setShareable(true);
        mci_->setDeviceType(QStringLiteral("CDAudio"));
        deviceCommand(QStringLiteral("Open"));
        if (deviceMode() == MciDevice::mciModeNotOpen)
            raise(kErrOpen, QStringLiteral("Unable to open device"));
        return;
    }
    static const QStringList words{"Close", "Play", "Pause", "Stop", "Prev", "Next", "Eject"};
    for (const QString& known : words)
        if (w == known.toUpper()) deviceCommand(known);
}

qint32 CdBase::Mode() {
    mode_ = deviceMode();
    return mode_;
}

QString CdBase::Cdid() {
    cdid_ = computeDiscId();
    return cdid_;
}

QString CdBase::computeDiscId() {
    bool openedHere = false;
    if (deviceMode() == MciDevice::mciModeNotOpen) {
        deviceCommand(QStringLiteral("Open"));
        if (deviceMode() == MciDevice::mciModeNotOpen) {
            raise(kErrOpen, QStringLiteral("Unable to open device"));
            return {};
        }
        openedHere = true;
    }
    const int count = mci_->Tracks();
    if (count < 0 || count > 100) return {};  // more than the tables hold
    Tracks = qint16(count);
    if (Tracks == 0) {
        // Left open on purpose: the close belongs to the path of a disc with tracks.
        raise(kErrNoDisc, QStringLiteral("No Audio CD found"));
        return {};
    }
    qint32 lastLength = 0;
    for (int i = 1; i <= Tracks; ++i) {
        mci_->setTrack(i);
        trackOffsets_[i] = split(mci_->TrackPosition());
        lastLength = mci_->TrackLength();
        const Msf len = split(lastLength);
        trackLengths_[i] = len.Minute * 60 + len.Second;
    }
    // The device reports the last track one frame short of the lead-out.
    Msf leadOut = split(lastLength);
    leadOut.Frame += 1;
    const qint64 f = trackOffsets_[Tracks].frames() + leadOut.frames();
    leadOut.Minute = qint32(f / 4500);
    leadOut.Second = qint32((f - leadOut.Minute * 4500LL) / 75);
    leadOut.Frame = qint32(f % 75);
    if (Tracks + 1 <= 100) trackOffsets_[Tracks + 1] = leadOut;

    const qint32 length = (leadOut.Minute * 60 + leadOut.Second) -
                          (trackOffsets_[1].Minute * 60 + trackOffsets_[1].Second);
    if (FitsInt16(length)) DiscLength = qint16(length);

    qint64 n = 0;
    for (int i = 1; i <= Tracks; ++i)
        n += digitSum(trackOffsets_[i].Minute * 60 + trackOffsets_[i].Second);
    const QString id = (FixedHex(quint32(n % 255), 2) + FixedHex(quint16(DiscLength), 4) +
                        FixedHex(quint16(Tracks), 2))
                           .toLower();
    if (openedHere) deviceCommand(QStringLiteral("Close"));
    return id;
}

qint16 CdBase::CurrentTrack() {
    if (deviceMode() == MciDevice::mciModeNotOpen) return 0;
    const qint64 position = MsfToFrames(mci_->Position());
    qint16 found = 0;
    const int count = mci_->Tracks();
    for (int i = 1; i <= count && i <= 32767; ++i) {
        mci_->setTrack(i);
        const qint64 start = MsfToFrames(mci_->TrackPosition());
        const qint64 length = MsfToFrames(mci_->TrackLength());
        if (start <= position && start + length >= position) found = qint16(i);
    }
    if (found) currentTrack_ = found;
    return found;
}

void CdBase::setCurrentTrack(qint16 track) {
    if (track > mci_->Tracks()) return;
    deviceCommand(QStringLiteral("Stop"));
    mci_->setTrack(track);
    mci_->setFrom(mci_->TrackPosition());
    currentTrack_ = track;
}

void CdBase::PlayTrack(qint16 track) {
    if (deviceMode() == MciDevice::mciModeNotOpen || track > mci_->Tracks()) return;
    deviceCommand(QStringLiteral("Stop"));
    mci_->setTrack(track);
    const qint32 start = mci_->TrackPosition();
    mci_->setFrom(start);
    mci_->setTo(FramesToMsf(MsfToFrames(start) + MsfToFrames(mci_->TrackLength())));
    deviceCommand(QStringLiteral("Play"));
}

QString CdBase::Position(int format) {
    mci_->setTrack(1);
    const qint64 frames = MsfToFrames(mci_->Position()) - MsfToFrames(mci_->TrackPosition());
    const qint32 msf = FramesToMsf(std::max<qint64>(0, frames));
    const Msf t = split(msf);
    switch (format) {
        case 1:
            return QString::number(msf);
        case 2:
            return QString::number(t.frames());
        case 3:
            return QString::number(t.Minute * 60 + t.Second);
        case 4:
            return QStringLiteral("%1:%2").arg(t.Minute).arg(t.Second, 2, 10, QLatin1Char('0'));
        default:
            return {};
    }
}

qint32 CdBase::SongLength(int track, bool ask) {
    if (ask) {
        mci_->setTrack(track);
        const Msf len = split(mci_->TrackLength());
        return len.Minute * 60 + len.Second;
    }
    if (track < 1 || track > Tracks || track > 100) return 0;
    return trackLengths_[track];
}

int CdBase::GetCdDriveLetters(QStringList& letters) {
    if (!Components::hasService<CdDrives>()) return 0;
    int hits = 0;
    for (const CdDrive& drive : CdDrives::get().Drives()) {
        if (drive.Letter < QLatin1Char('C') || drive.Letter > QLatin1Char('Z')) continue;
        ++hits;
        // The array is made anew at each hit: only the last letter stands in it.
        letters = QStringList(hits + 1, QString());
        letters[hits] = drive.Letter;
    }
    return hits;
}

QString CdBase::GetMSid(const QString& drive) {
    if (drive.isEmpty() || !Components::hasService<CdDrives>()) return QStringLiteral("0");
    const QString folder = CdDrives::get().TrackFolder(drive.at(0));
    if (folder.isEmpty()) return QStringLiteral("0");
    // The name is compared without regard to case, as on the drive it stands for.
    const QStringList hit = QDir(folder).entryList({QStringLiteral("track01.cda")}, QDir::Files);
    if (hit.isEmpty()) return QStringLiteral("0");
    QFile file(folder + QLatin1Char('/') + hit.first());
    if (!file.open(QIODevice::ReadOnly) || !file.seek(24)) return QStringLiteral("0");
    const QByteArray record = file.read(4);
    if (record.size() < 4) return QStringLiteral("0");
    return Hex(qFromLittleEndian<quint32>(record.constData()));
}

QString CdBase::GetQueryString() {
    cdid_ = computeDiscId();
    const QString id = Cdid();
    QStringList starts;
    for (int i = 1; i <= Tracks; ++i) starts << QString::number(trackOffsets_[i].frames());
    return id + QLatin1Char(' ') + QString::number(Tracks) + QLatin1Char(' ') +
           starts.join(QLatin1Char(' ')) + QLatin1Char(' ') + QString::number(DiscLength);
}

void CdBase::setConnectTimeout(qint32 ms) {
    connectTimeout_ = std::clamp(ms, 5000, 65535);
    Timer1.setInterval(connectTimeout_);
}

void CdBase::statusUpdate() {
    const int mode = deviceMode();
    if (mode == lastMode_) return;
    lastMode_ = mode;
    static const char* const words[] = {
        "Device is not open", "Device is stopped", "Device is playing", "Device is recording",
        "Device is seeking",  "Device is paused",  "Tray is out"};
    const bool known = mode >= MciDevice::mciModeNotOpen && mode <= MciDevice::mciModeReady;
    emit ModeChange(known ? QString::fromLatin1(words[mode - MciDevice::mciModeNotOpen])
                          : QString());
}

bool CdBase::refuseBlank(const QString& value, const QString& property, bool critical) {
    if (!value.contains(QLatin1Char(' '))) return false;
    const QString text = QStringLiteral("No spaces allowed in ") + property;
    if (critical)
        MsgBoxShow(text, Mb::Critical, QStringLiteral("Cddb Control Error"));
    else
        MsgBoxShow(text);
    return true;
}

void CdBase::setEmail(const QString& v) {
    if (!refuseBlank(v, QStringLiteral("Email"), true)) email_ = v;
}

void CdBase::setRevision(const QString& v) {
    if (!refuseBlank(v, QStringLiteral("Revision"), true)) revision_ = v;
}

void CdBase::setAppName(const QString& v) {
    if (!refuseBlank(v, QStringLiteral("AppName"), false)) appName_ = v;
}

void CdBase::setHostName(const QString& v) {
    if (!refuseBlank(v, QStringLiteral("HostName"), false)) hostName_ = v;
}

QString CdBase::NewLineFix(QString& text) {
    return cantovel::NewLineFix(text);
}

QString CdBase::PullData(QString& text, const QString& key) {
    return cantovel::PullData(text, key);
}

QString CdBase::RemoveTopLine(const QString& text) {
    return cantovel::RemoveTopLine(text);
}

}  // namespace cantovel
