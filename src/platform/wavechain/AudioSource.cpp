#include "platform/wavechain/AudioSource.h"

#include <sndfile.h>

#include <QFileInfo>
#include <cstring>

#include "app/FileNames.h"

namespace cantovel {

AudioSource::~AudioSource() {
    close();
}

AudioSource::AudioSource(AudioSource&& other) noexcept {
    *this = std::move(other);
}

AudioSource& AudioSource::operator=(AudioSource&& other) noexcept {
    if (this != &other) {
        close();
        file_ = std::exchange(other.file_, nullptr);
        error_ = std::move(other.error_);
        rate_ = other.rate_;
        channels_ = other.channels_;
        frames_ = other.frames_;
        truncated_ = other.truncated_;
    }
    return *this;
}

namespace {

// Writers that stream a WAV leave the length open with one of these.
bool lengthLeftOpen(quint32 declared) {
    return declared == 0 || declared >= 0x7FFFFFFFu;
}

bool dataChunkCutShort(SNDFILE* file, const SF_INFO& info, qint64 fileSize) {
    if ((info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_WAV) return false;
    SF_CHUNK_INFO chunk;
    std::memset(&chunk, 0, sizeof chunk);
    std::memcpy(chunk.id, "data", 4);
    chunk.id_size = 4;
    SF_CHUNK_ITERATOR* it = sf_get_chunk_iterator(file, &chunk);
    if (!it) return false;
    SF_CHUNK_INFO found;
    std::memset(&found, 0, sizeof found);
    if (sf_get_chunk_size(it, &found) != SF_ERR_NO_ERROR) return false;
    if (lengthLeftOpen(found.datalen)) return false;
    // The smallest header before the samples: RIFF (12), "fmt " (8 + 16), "data" (8).
    constexpr qint64 minimalHeader = 44;
    return qint64(found.datalen) > fileSize - minimalHeader;
}

}  // namespace

bool AudioSource::open(const QString& path) {
    close();
    SF_INFO info;
    std::memset(&info, 0, sizeof info);
    const QByteArray name = NameToBytes(path);
    SNDFILE* file = sf_open(name.constData(), SFM_READ, &info);
    if (!file) {
        error_ = QString::fromLocal8Bit(sf_strerror(nullptr));
        return false;
    }
    if (info.channels < 1 || info.samplerate < 1) {
        sf_close(file);
        error_ = QStringLiteral("The file holds no sound.");
        return false;
    }
    file_ = file;
    rate_ = info.samplerate;
    channels_ = info.channels;
    frames_ = info.frames;
    truncated_ = dataChunkCutShort(file, info, QFileInfo(path).size());
    // Integer samples come in at full scale ±1, the way the float paths expect them.
    sf_command(file, SFC_SET_NORM_FLOAT, nullptr, SF_TRUE);
    return true;
}

void AudioSource::close() {
    if (file_) sf_close(file_);
    file_ = nullptr;
    rate_ = channels_ = 0;
    frames_ = 0;
    truncated_ = false;
}

qint64 AudioSource::read(std::vector<float>& out, qint64 count, int outChannels) {
    if (!file_ || count <= 0) return 0;
    if (outChannels == channels_) {
        out.resize(size_t(count * outChannels));
        const sf_count_t got = sf_readf_float(file_, out.data(), count);
        out.resize(size_t(got * outChannels));
        return got;
    }
    raw_.resize(size_t(count * channels_));
    const sf_count_t got = sf_readf_float(file_, raw_.data(), count);
    out.resize(size_t(got * outChannels));
    mixChannels(raw_.data(), channels_, out.data(), outChannels, got);
    return got;
}

void mixChannels(const float* in, int inChannels, float* out, int outChannels, qint64 frames) {
    if (inChannels == outChannels) {
        std::memcpy(out, in, size_t(frames * inChannels) * sizeof(float));
        return;
    }
    if (outChannels == 1) {
        const float scale = 1.0f / float(inChannels);
        for (qint64 f = 0; f < frames; ++f) {
            float sum = 0;
            for (int c = 0; c < inChannels; ++c) sum += in[f * inChannels + c];
            out[f] = sum * scale;
        }
        return;
    }
    if (inChannels < outChannels) {
        for (qint64 f = 0; f < frames; ++f)
            for (int c = 0; c < outChannels; ++c)
                out[f * outChannels + c] = in[f * inChannels + c % inChannels];
        return;
    }
    // More in than out: each output averages the inputs that fold onto it.
    for (qint64 f = 0; f < frames; ++f) {
        for (int c = 0; c < outChannels; ++c) {
            float sum = 0;
            int n = 0;
            for (int i = c; i < inChannels; i += outChannels, ++n) sum += in[f * inChannels + i];
            out[f * outChannels + c] = sum / float(n);
        }
    }
}

}  // namespace cantovel
