// Opening a local MP3 with the real mpv backend (null audio and video outputs): the time
// from setting the file name to the open-complete event, with a handle that already
// exists, and with a fresh handle as a window's first open pays it.
#include <benchmark/benchmark.h>
#include <lame/lame.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <vector>

#include "platform/Components.h"
#include "platform/clock/QtClock.h"
#include "platform/mediaplayer/MpvMediaPlayer.h"

using namespace cantovel;

namespace {

// A 3-minute stereo MP3 at 128 kbit/s, as a typical song.
QString songPath() {
    static QTemporaryDir dir;
    static const QString path = dir.filePath(QStringLiteral("song.mp3"));
    if (QFile::exists(path)) return path;
    constexpr int Rate = 44100, Seconds = 180;
    lame_t lame = lame_init();
    lame_set_in_samplerate(lame, Rate);
    lame_set_num_channels(lame, 2);
    lame_set_brate(lame, 128);
    if (lame_init_params(lame) < 0) std::abort();
    std::vector<short> pcm(2 * Rate);
    std::vector<unsigned char> out(Rate * 2 + 7200);
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly)) std::abort();
    for (int s = 0; s < Seconds; ++s) {
        for (int i = 0; i < Rate; ++i)
            pcm[2 * i] = pcm[2 * i + 1] = short(8000 * std::sin(2 * M_PI * 440.0 * i / Rate));
        const int n =
            lame_encode_buffer_interleaved(lame, pcm.data(), Rate, out.data(), int(out.size()));
        f.write(reinterpret_cast<const char*>(out.data()), n);
    }
    const int n = lame_encode_flush(lame, out.data(), int(out.size()));
    f.write(reinterpret_cast<const char*>(out.data()), n);
    lame_close(lame);
    return path;
}

// Sets the file name and times it until the open state reaches 6.
double openSeconds(MpvMediaPlayer& player, const QString& path) {
    bool open = false;
    const auto connection = QObject::connect(&player, &MediaPlayer::OpenStateChange,
                                             [&](int, int state) { open = state == 6; });
    const auto start = std::chrono::steady_clock::now();
    if (player.setFileName(path) != 0 || !open) std::abort();
    const auto end = std::chrono::steady_clock::now();
    QObject::disconnect(connection);
    return std::chrono::duration<double>(end - start).count();
}

void BM_OpenMp3(benchmark::State& state) {
    const QString path = songPath();
    MpvMediaPlayer player;
    for (auto _ : state) {
        state.SetIterationTime(openSeconds(player, path));
        player.setFileName(QString());
    }
}
BENCHMARK(BM_OpenMp3)->Unit(benchmark::kMillisecond)->UseManualTime();

void BM_CreateAndOpenMp3(benchmark::State& state) {
    const QString path = songPath();
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        auto player = std::make_unique<MpvMediaPlayer>();
        openSeconds(*player, path);
        const auto end = std::chrono::steady_clock::now();
        state.SetIterationTime(std::chrono::duration<double>(end - start).count());
        state.PauseTiming();
        player.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_CreateAndOpenMp3)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace

int main(int argc, char** argv) {
    qputenv("CANTOVEL_AO", "null");
    qputenv("CANTOVEL_VO", "null");
    QCoreApplication app(argc, argv);
    Components::provideService<Clock>(std::make_shared<QtClock>());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
