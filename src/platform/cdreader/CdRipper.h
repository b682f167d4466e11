#pragma once
// Copies a stretch of a CD, a drive's or a disc image's, into a WAV file: libcdio-paranoia
// reads the sectors, libsndfile writes them, and when the file is to hold another format
// than the CD's own the samples are mixed and resampled (soxr) on the way.
//
// It runs on whatever thread calls run() and reports through the callbacks it is given.

#include <QString>
#include <atomic>
#include <functional>

#include "platform/wavechain/WaveFormat.h"

namespace cantovel {

class CdRipper {
  public:
    struct Job {
        QString device;       // device node or disc image
        qint64 first = 0;     // first sector (libcdio LSN)
        qint64 count = 0;     // sectors
        QString fileName;     // the WAV to write
        WaveFormat format;    // what the WAV holds
        int blockCount = 26;  // sectors a read
        int copyMode = 1;     // 0 full paranoia, 1 burst, 2 overlap only
        int deviceType = 0;   // 0: probe the byte order; else little-endian
    };
    enum class Outcome { Done, Stopped, ReadFailed, WriteFailed };

    // `started` once the disc and the file are open and reading begins; `progress` with
    // the sectors done after each block; `stop` is asked between blocks.
    struct Callbacks {
        std::function<void()> started;
        std::function<void(qint64 done)> progress;
        std::function<bool()> stop;
    };

    // A failed write leaves the system's error number in `writeError` when given.
    static Outcome run(const Job& job, const Callbacks& callbacks, int* writeError = nullptr);
};

}  // namespace cantovel
