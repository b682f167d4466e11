#pragma once
// Sound files made for the tests with the libraries themselves (a tone written by
// libsndfile, an MP3 encoded by LAME), the readers that check results, and a wait that
// lets queued events arrive.

#include <QByteArray>
#include <QString>
#include <functional>

namespace cantovel::test {

// Writes `seconds` of a tone (a different pitch in each channel) with libsndfile.
// `sndfileFormat` is a libsndfile format code (WAV 16-bit PCM unless told).
bool writeTone(const QString& path, double seconds, int rate = 44100, int channels = 2,
               int sndfileFormat = 0);

// Encodes `seconds` of a tone into an MP3 with LAME at `kbps` constant bit rate, with the
// LAME header frame that gives players the exact length.
bool writeMp3Tone(const QString& path, double seconds, int rate = 44100, int channels = 2,
                  int kbps = 128);

// Cuts a file down to `bytes`.
bool truncateFile(const QString& path, qint64 bytes);
// Writes `bytes` as the whole file.
bool writeBytes(const QString& path, const QByteArray& bytes);

// What libsndfile reports of a sound file; ok false when it can't open it.
struct SoundInfo {
    bool ok = false;
    int rate = 0;
    int channels = 0;
    qint64 frames = 0;
    int format = 0;  // libsndfile format code
};
SoundInfo readSoundInfo(const QString& path);
// The samples of a sound file as interleaved 16-bit little-endian bytes, as on a CD.
QByteArray readPcm16(const QString& path);

// An MP3 fully decoded by mpg123: its rate and channels, the samples a channel it gives,
// its first frame's bit rate and mode; ok false when mpg123 finds no MPEG audio.
struct Mp3Info {
    bool ok = false;
    long rate = 0;
    int channels = 0;
    qint64 samples = 0;
    int bitrateKbps = 0;
    int layer = 0;
    // Root mean square of all samples, full scale 1.
    double rms = 0;
};
Mp3Info decodeMp3(const QString& path);

// Runs `body` in a forked child whose files can't grow past `limitBytes` (a write past it
// fails as on a full disk) and returns the child's exit code, or -1 if it didn't exit.
int runWithFileSizeLimit(qint64 limitBytes, const std::function<int()>& body);

// Runs `body` with `folder` on a disk of `bytes` bytes that fills up: a tmpfs mounted there
// when the test may mount one (gone again afterwards, so `body` checks what it needs), else
// a file-size limit of `bytes` on every file while `body` runs. CANTOVEL_TEST_NO_MOUNT=1
// takes the second way. Returns body's code.
int runOnFillingFolder(const QString& folder, qint64 bytes, const std::function<int()>& body);

// The bytes of a file; empty when it can't be read.
QByteArray fileBytes(const QString& path);

// The names of `folder`'s hidden files, where an unfinished output would be left.
QStringList hiddenFiles(const QString& folder);

// Runs events until `done` answers true or `timeoutMs` of wall time pass; returns `done`.
bool waitUntil(const std::function<bool()>& done, int timeoutMs = 20000);

}  // namespace cantovel::test
