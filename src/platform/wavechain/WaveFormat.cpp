#include "platform/wavechain/WaveFormat.h"

#include <sndfile.h>

#include <QLocale>
#include <QStringList>
#include <cstring>

namespace cantovel {

namespace {

struct EncodingInfo {
    WaveFormat::Encoding encoding;
    const char* key;
    const char* name;
    int subtype;
    double bits;
};

const EncodingInfo kEncodings[] = {
    {WaveFormat::Pcm8, "pcm8", "PCM 8-bit", SF_FORMAT_PCM_U8, 8},
    {WaveFormat::Pcm16, "pcm16", "PCM 16-bit", SF_FORMAT_PCM_16, 16},
    {WaveFormat::Pcm24, "pcm24", "PCM 24-bit", SF_FORMAT_PCM_24, 24},
    {WaveFormat::Pcm32, "pcm32", "PCM 32-bit", SF_FORMAT_PCM_32, 32},
    {WaveFormat::Float32, "float", "IEEE Float 32-bit", SF_FORMAT_FLOAT, 32},
    {WaveFormat::MuLaw, "ulaw", "\u00b5-law", SF_FORMAT_ULAW, 8},
    {WaveFormat::ALaw, "alaw", "A-law", SF_FORMAT_ALAW, 8},
    {WaveFormat::ImaAdpcm, "ima-adpcm", "IMA ADPCM", SF_FORMAT_IMA_ADPCM, 4},
    {WaveFormat::MsAdpcm, "ms-adpcm", "Microsoft ADPCM", SF_FORMAT_MS_ADPCM, 4},
    {WaveFormat::Gsm610, "gsm610", "GSM 6.10", SF_FORMAT_GSM610, 1.625},
};

const EncodingInfo& infoOf(WaveFormat::Encoding encoding) {
    for (const auto& info : kEncodings)
        if (info.encoding == encoding) return info;
    return kEncodings[1];
}

}  // namespace

QList<WaveFormat::Encoding> WaveFormat::encodings() {
    QList<Encoding> all;
    for (const auto& info : kEncodings) all << info.encoding;
    return all;
}

QList<int> WaveFormat::standardRates() {
    return {8000, 11025, 16000, 22050, 32000, 44100, 48000};
}

QString WaveFormat::encodingName(Encoding encoding) {
    return QString::fromUtf8(infoOf(encoding).name);
}

double WaveFormat::bitsPerSample(Encoding encoding) {
    return infoOf(encoding).bits;
}

int WaveFormat::sndfileFormat() const {
    return SF_FORMAT_WAV | infoOf(encoding).subtype;
}

bool WaveFormat::isWritable() const {
    if (sampleRate < 1 || channels < 1 || channels > 8) return false;
    SF_INFO info;
    std::memset(&info, 0, sizeof info);
    info.samplerate = sampleRate;
    info.channels = channels;
    info.format = sndfileFormat();
    return sf_format_check(&info) == SF_TRUE;
}

QString WaveFormat::description() const {
    const QString layout = channels == 1   ? QStringLiteral("Mono")
                           : channels == 2 ? QStringLiteral("Stereo")
                                           : QStringLiteral("%1 channels").arg(channels);
    return QStringLiteral("%1, %2 Hz, %3")
        .arg(encodingName(encoding), QLocale(QLocale::English).toString(sampleRate), layout);
}

QString WaveFormat::toSettingsText() const {
    return QStringLiteral("%1,%2,%3")
        .arg(QLatin1String(infoOf(encoding).key))
        .arg(sampleRate)
        .arg(channels);
}

std::optional<WaveFormat> WaveFormat::fromSettingsText(const QString& text) {
    const QStringList parts = text.trimmed().split(QLatin1Char(','));
    if (parts.size() != 3) return std::nullopt;
    WaveFormat format;
    bool known = false;
    for (const auto& info : kEncodings)
        if (parts[0].trimmed().compare(QLatin1String(info.key), Qt::CaseInsensitive) == 0) {
            format.encoding = info.encoding;
            known = true;
        }
    bool rateOk = false, channelsOk = false;
    format.sampleRate = parts[1].trimmed().toInt(&rateOk);
    format.channels = parts[2].trimmed().toInt(&channelsOk);
    if (!known || !rateOk || !channelsOk || !format.isWritable()) return std::nullopt;
    return format;
}

}  // namespace cantovel
