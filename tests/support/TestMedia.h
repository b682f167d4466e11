#pragma once
// Media files for tests, made with the real libraries: WAV through libsndfile, MP3
// through LAME. All carry a quiet sine tone.

#include <QString>

namespace cantovel::test {

// A 16-bit PCM WAV of `seconds` at `rate` with `channels` channels.
bool writeToneWav(const QString& path, double seconds, int rate = 44100, int channels = 2);
// A constant-bitrate MP3 (with its LAME/Xing header, so the length is exact).
bool writeToneMp3(const QString& path, double seconds, int rate = 44100, int channels = 2,
                  int kbps = 128);
// Writes `bytes` as the whole file.
bool writeBytes(const QString& path, const QByteArray& bytes);

}  // namespace cantovel::test
