#include "support/TestMedia.h"

#include <lame/lame.h>
#include <sndfile.h>

#include <QFile>
#include <cmath>
#include <vector>

namespace cantovel::test {

namespace {
// Interleaved 16-bit samples of a 440 Hz tone at a quarter of full scale.
std::vector<short> tone(double seconds, int rate, int channels) {
    const auto frames = static_cast<size_t>(seconds * rate);
    std::vector<short> samples(frames * channels);
    for (size_t i = 0; i < frames; ++i) {
        const auto s = static_cast<short>(8000 * std::sin(2 * M_PI * 440.0 * double(i) / rate));
        for (int c = 0; c < channels; ++c) samples[i * channels + c] = s;
    }
    return samples;
}
}  // namespace

bool writeToneWav(const QString& path, double seconds, int rate, int channels) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* file = sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info);
    if (!file) return false;
    const std::vector<short> samples = tone(seconds, rate, channels);
    const sf_count_t frames = sf_count_t(samples.size() / channels);
    const bool ok = sf_writef_short(file, samples.data(), frames) == frames;
    return sf_close(file) == 0 && ok;
}

bool writeToneMp3(const QString& path, double seconds, int rate, int channels, int kbps) {
    lame_t lame = lame_init();
    if (!lame) return false;
    lame_set_in_samplerate(lame, rate);
    lame_set_out_samplerate(lame, rate);
    lame_set_num_channels(lame, channels);
    lame_set_mode(lame, channels == 1 ? MONO : JOINT_STEREO);
    lame_set_brate(lame, kbps);
    lame_set_bWriteVbrTag(lame, 1);
    if (lame_init_params(lame) < 0) {
        lame_close(lame);
        return false;
    }
    std::vector<short> samples = tone(seconds, rate, channels);
    const int frames = int(samples.size() / channels);
    std::vector<unsigned char> out(size_t(1.25 * frames) + 7200 + 16384);
    int written = channels == 1 ? lame_encode_buffer(lame, samples.data(), samples.data(), frames,
                                                     out.data(), int(out.size()))
                                : lame_encode_buffer_interleaved(lame, samples.data(), frames,
                                                                 out.data(), int(out.size()));
    if (written >= 0) {
        const int flushed =
            lame_encode_flush(lame, out.data() + written, int(out.size()) - written);
        written = flushed < 0 ? -1 : written + flushed;
    }
    bool ok = written >= 0;
    QFile file(path);
    if (ok && file.open(QIODevice::WriteOnly)) {
        ok = file.write(reinterpret_cast<const char*>(out.data()), written) == written;
        // The header frame LAME left blank at the start now gets the totals.
        unsigned char header[4096];
        const size_t size = lame_get_lametag_frame(lame, header, sizeof header);
        if (ok && size > 0 && file.seek(0))
            ok = file.write(reinterpret_cast<const char*>(header), qint64(size)) == qint64(size);
        file.close();
    } else {
        ok = false;
    }
    lame_close(lame);
    return ok;
}

bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

}  // namespace cantovel::test
