#include "platform/wavechain/SoundSink.h"

#include <sndfile.h>

#include <QFile>
#include <cerrno>
#include <cstring>
#include <utility>

#include "app/FileNames.h"

namespace cantovel {

bool isDiskFullError(int error) {
    return error == ENOSPC || error == EFBIG || error == EDQUOT;
}

SoundSink::~SoundSink() {
    if (file_) sf_close(file_);
}

bool SoundSink::open(const QString& path, int format, int rate, int channels) {
    SF_INFO info;
    std::memset(&info, 0, sizeof info);
    info.samplerate = rate;
    info.channels = channels;
    info.format = format;
    errno = 0;
    file_ = sf_open(NameToBytes(path).constData(), SFM_WRITE, &info);
    openErrno_ = file_ ? 0 : errno;
    if (!file_) {
        errorText_ = QString::fromLocal8Bit(sf_strerror(nullptr));
        return false;
    }
    // Converted sound may overshoot full scale a little; it clips rather than wraps.
    sf_command(file_, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    return true;
}

bool SoundSink::failed() {
    writeErrno_ = errno ? errno : EIO;
    return false;
}

bool SoundSink::write(const float* interleaved, qint64 frames) {
    errno = 0;
    return (file_ && sf_writef_float(file_, interleaved, frames) == frames) || failed();
}

bool SoundSink::write(const short* interleaved, qint64 frames) {
    errno = 0;
    return (file_ && sf_writef_short(file_, interleaved, frames) == frames) || failed();
}

bool SoundSink::close() {
    errno = 0;
    return (file_ && sf_close(std::exchange(file_, nullptr)) == 0) || failed();
}

}  // namespace cantovel
