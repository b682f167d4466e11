#include "support/AudioFixtures.h"

#include <lame/lame.h>
#include <mpg123.h>
#include <sndfile.h>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstring>
#include <vector>

namespace cantovel::test {

namespace {

// Interleaved float tone: channel c at 440 Hz × (c + 1), at half scale.
std::vector<float> tone(qint64 frames, int rate, int channels) {
    std::vector<float> pcm(size_t(frames * channels));
    for (qint64 f = 0; f < frames; ++f)
        for (int c = 0; c < channels; ++c)
            pcm[size_t(f * channels + c)] =
                0.5f * float(std::sin(2 * M_PI * 440.0 * (c + 1) * double(f) / rate));
    return pcm;
}

}  // namespace

bool writeTone(const QString& path, double seconds, int rate, int channels, int sndfileFormat) {
    SF_INFO info;
    std::memset(&info, 0, sizeof info);
    info.samplerate = rate;
    info.channels = channels;
    info.format = sndfileFormat ? sndfileFormat : (SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    SNDFILE* file = sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info);
    if (!file) return false;
    const qint64 frames = qint64(std::llround(seconds * rate));
    const std::vector<float> pcm = tone(frames, rate, channels);
    const bool ok = sf_writef_float(file, pcm.data(), frames) == frames;
    return sf_close(file) == 0 && ok;
}

bool writeMp3Tone(const QString& path, double seconds, int rate, int channels, int kbps) {
    lame_global_flags* lame = lame_init();
    lame_set_in_samplerate(lame, rate);
    lame_set_num_channels(lame, channels);
    lame_set_mode(lame, channels == 1 ? MONO : JOINT_STEREO);
    lame_set_brate(lame, kbps);
    lame_set_bWriteVbrTag(lame, 1);
    if (lame_init_params(lame) < 0) {
        lame_close(lame);
        return false;
    }
    const qint64 frames = qint64(std::llround(seconds * rate));
    const std::vector<float> pcm = tone(frames, rate, channels);
    std::vector<float> left(static_cast<size_t>(frames)), right(static_cast<size_t>(frames));
    for (qint64 f = 0; f < frames; ++f) {
        left[size_t(f)] = pcm[size_t(f * channels)];
        right[size_t(f)] = pcm[size_t(f * channels + channels - 1)];
    }
    std::vector<unsigned char> mp3(size_t(frames * 5 / 4 + 7200) * 2);
    int bytes = lame_encode_buffer_ieee_float(lame, left.data(), right.data(), int(frames),
                                              mp3.data(), int(mp3.size()));
    if (bytes >= 0) {
        const int tail = lame_encode_flush(lame, mp3.data() + bytes, int(mp3.size()) - bytes);
        bytes = tail < 0 ? tail : bytes + tail;
    }
    // The header frame LAME left blank at the start now gets the totals.
    unsigned char header[4096];
    const size_t headerBytes = bytes > 0 ? lame_get_lametag_frame(lame, header, sizeof header) : 0;
    lame_close(lame);
    if (bytes < 0) return false;
    std::memcpy(mp3.data(), header, std::min(headerBytes, size_t(bytes)));
    return writeBytes(path, QByteArray(reinterpret_cast<const char*>(mp3.data()), bytes));
}

bool truncateFile(const QString& path, qint64 bytes) {
    return QFile::resize(path, bytes);
}

bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

SoundInfo readSoundInfo(const QString& path) {
    SF_INFO info;
    std::memset(&info, 0, sizeof info);
    SNDFILE* file = sf_open(QFile::encodeName(path).constData(), SFM_READ, &info);
    if (!file) return {};
    sf_close(file);
    return {true, info.samplerate, info.channels, info.frames, info.format};
}

QByteArray readPcm16(const QString& path) {
    SF_INFO info;
    std::memset(&info, 0, sizeof info);
    SNDFILE* file = sf_open(QFile::encodeName(path).constData(), SFM_READ, &info);
    if (!file) return {};
    QByteArray data(qsizetype(info.frames * info.channels * 2), '\0');
    const sf_count_t got = sf_readf_short(file, reinterpret_cast<short*>(data.data()), info.frames);
    sf_close(file);
    return data.left(qsizetype(got * info.channels * 2));
}

Mp3Info decodeMp3(const QString& path) {
    mpg123_init();
    mpg123_handle* h = mpg123_new(nullptr, nullptr);
    if (!h) return {};
    mpg123_param(h, MPG123_ADD_FLAGS, MPG123_QUIET, 0);
    Mp3Info result;
    int encoding = 0;
    if (mpg123_open(h, QFile::encodeName(path).constData()) == MPG123_OK &&
        mpg123_getformat(h, &result.rate, &result.channels, &encoding) == MPG123_OK) {
        mpg123_frameinfo frame;
        if (mpg123_info(h, &frame) == MPG123_OK) {
            result.bitrateKbps = frame.bitrate;
            result.layer = frame.layer;
        }
        // Every frame in 16-bit, whatever the stream's own encoding.
        mpg123_format_none(h);
        mpg123_format(h, result.rate, result.channels, MPG123_ENC_SIGNED_16);
        std::vector<short> buffer(1 << 15);
        size_t got = 0;
        double sumSquares = 0;
        qint64 values = 0;
        int status;
        do {
            status = mpg123_read(h, buffer.data(), buffer.size() * sizeof(short), &got);
            const size_t n = got / sizeof(short);
            for (size_t i = 0; i < n; ++i) sumSquares += double(buffer[i]) * buffer[i];
            values += qint64(n);
        } while (status == MPG123_OK || status == MPG123_NEW_FORMAT);
        result.samples = values / result.channels;
        result.rms = values ? std::sqrt(sumSquares / double(values)) / 32768.0 : 0;
        result.ok = status == MPG123_DONE;
    }
    mpg123_close(h);
    mpg123_delete(h);
    return result;
}

int runWithFileSizeLimit(qint64 limitBytes, const std::function<int()>& body) {
    const pid_t child = ::fork();
    if (child < 0) return -1;
    if (child == 0) {
        // A write past the limit then fails with EFBIG instead of killing the process.
        ::signal(SIGXFSZ, SIG_IGN);
        struct rlimit limit;
        ::getrlimit(RLIMIT_FSIZE, &limit);
        limit.rlim_cur = rlim_t(limitBytes);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        ::_exit(body());
    }
    int status = 0;
    if (::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

int runOnFillingFolder(const QString& folder, qint64 bytes, const std::function<int()>& body) {
    QDir().mkpath(folder);
    const QByteArray path = QFile::encodeName(folder);
    const QByteArray options = "size=" + QByteArray::number(bytes);
    if (qgetenv("CANTOVEL_TEST_NO_MOUNT") != "1" &&
        ::mount("tmpfs", path.constData(), "tmpfs", MS_NOSUID | MS_NODEV, options.constData()) ==
            0) {
        const int code = body();
        ::umount2(path.constData(), MNT_DETACH);
        return code;
    }
    // In this process rather than a forked child: a child of a process with threads may
    // find a lock held by one that is gone. Every file grows to `bytes` at most meanwhile.
    const auto oldHandler = ::signal(SIGXFSZ, SIG_IGN);
    struct rlimit saved;
    ::getrlimit(RLIMIT_FSIZE, &saved);
    struct rlimit limit = saved;
    limit.rlim_cur = rlim_t(bytes);
    ::setrlimit(RLIMIT_FSIZE, &limit);
    const int code = body();
    ::setrlimit(RLIMIT_FSIZE, &saved);
    ::signal(SIGXFSZ, oldHandler);
    return code;
}

QByteArray fileBytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QStringList hiddenFiles(const QString& folder) {
    return QDir(folder).entryList({QStringLiteral(".*")}, QDir::Files | QDir::Hidden);
}

bool waitUntil(const std::function<bool()>& done, int timeoutMs) {
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
    return true;
}

}  // namespace cantovel::test
