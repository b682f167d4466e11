#include "platform/cdreader/CDReader.h"

#include <QMetaObject>
#include <algorithm>
#include <optional>

#include "app/Runtime.h"
#include "app/Settings.h"
#include "platform/Components.h"
#include "platform/wavechain/FormatChooser.h"

namespace cantovel {

namespace {

// A whole number stored under `name`, when there is one.
std::optional<int> readNumber(RegRoot root, const QString& key, const QString& name) {
    const QString text = ReadRegValue(root, key, name, QString());
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    return ok ? std::optional<int>(value) : std::nullopt;
}

}  // namespace

void CDReader::setBlockCount(int sectors) {
    // Kept as given; a copy asks the drive for 1 to 256 sectors a read whatever it says.
    blockCount_ = sectors;
}

void CDReader::setCopyMode(int mode) {
    copyMode_ = std::clamp(mode, 0, 2);
}

void CDReader::setDeviceType(int type) {
    deviceType_ = std::max(type, 0);
}

void CDReader::LoadRegistry(RegRoot root, const QString& keyPath) {
    if (auto v = readNumber(root, keyPath, QStringLiteral("BlockCount"))) setBlockCount(*v);
    if (auto v = readNumber(root, keyPath, QStringLiteral("CopyMode"))) setCopyMode(*v);
    if (auto v = readNumber(root, keyPath, QStringLiteral("DeviceType"))) setDeviceType(*v);
    if (auto v = readNumber(root, keyPath, QStringLiteral("DeviceID")); v && *v >= 0)
        deviceID_ = *v;
    if (auto f = WaveFormat::fromSettingsText(
            ReadRegValue(root, keyPath, QStringLiteral("WaveFormat"), QString())))
        copyFormat_ = *f;
}

void CDReader::SaveRegistry(RegRoot root, const QString& keyPath) {
    WriteRegValue(root, keyPath, QStringLiteral("BlockCount"), QString::number(blockCount_));
    WriteRegValue(root, keyPath, QStringLiteral("CopyMode"), QString::number(copyMode_));
    WriteRegValue(root, keyPath, QStringLiteral("DeviceType"), QString::number(deviceType_));
    WriteRegValue(root, keyPath, QStringLiteral("DeviceID"), QString::number(deviceID_));
    WriteRegValue(root, keyPath, QStringLiteral("WaveFormat"), copyFormat_.toSettingsText());
}

void CDReader::SelectWaveFormat(QWidget* owner) {
    std::unique_ptr<FormatChooser> chooser = Components::create<FormatChooser>();
    if (chooser && chooser->ChooseFormat(QStringLiteral("Select WAV Format"), copyFormat_, owner))
        copyFormat_ = chooser->Format();
}

int CDReader::CurrentTrack() const {
    const qint64 at = ToFrames(Position());
    const QList<CDTrack> tracks = Tracks();
    int current = tracks.isEmpty() ? 0 : tracks.first().Number;
    for (const CDTrack& t : tracks)
        if (ToFrames(t.StartPosition) <= at) current = t.Number;
    return current;
}

QString CDReader::TrackFileName(QString& baseName, int index) const {
    QString stem = baseName;
    if (stem.endsWith(QLatin1String(".wav"), Qt::CaseInsensitive)) stem.chop(4);
    return stem + Format(index + 1, QStringLiteral("00")) + QStringLiteral(".wav");
}

bool CDReader::canCopy(int index, bool copying) {
    const QList<CDTrack> tracks = Tracks();
    if (!copying && index >= 0 && index < tracks.size() && tracks[index].IsAudio) return true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            emit CopyError();
            emit CopyFinished();
        },
        Qt::QueuedConnection);
    return false;
}

}  // namespace cantovel
