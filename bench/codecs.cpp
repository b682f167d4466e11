// Conversion speed of the codec components against the libraries' own command-line tools
// on the same input, side by side in one run: WAV to MP3 against `lame -b 128`, MP3 to
// WAV against `mpg123 -w`, 44.1 kHz to 22.05 kHz against `sox`; then the same three
// through the conversion windows as a user runs them (list, Encode, folder, format).
// Prints times, speed ratios (tool time / our time: above 1 is faster than the tool) and
// the longest pause of the UI thread during our runs. It measures only; it never fails
// on time.

#include <sndfile.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QListWidget>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <random>
#include <vector>

#include "app/Forms.h"
#include "app/Settings.h"
#include "convert/frmBatchConvert.h"
#include "convert/frmDecode.h"
#include "convert/frmEncode.h"
#include "platform/Components.h"
#include "platform/clock/QtClock.h"
#include "platform/dialogs/FileDialogs.h"
#include "platform/mp3decoder/Mpg123Mp3Decoder.h"
#include "platform/mp3encoder/LameMp3Encoder.h"
#include "platform/msgbox/MsgBox.h"
#include "platform/registry/RegistryStore.h"
#include "platform/wavechain/SndfileWaveChain.h"

using namespace cantovel;

namespace {

// Short runs are repeated more, so the machine's noise weighs less in their medians.
constexpr int kEncodeRuns = 5;
constexpr int kShortRuns = 15;
constexpr double kSeconds = 60;

// Music-like input: a few tones with a slow sweep and some noise, so the encoder works as
// it would on real sound.
bool writeSource(const QString& path) {
    const int rate = 44100, channels = 2;
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* file = sf_open(QFile::encodeName(path).constData(), SFM_WRITE, &info);
    if (!file) return false;
    std::mt19937 noise(7);
    std::uniform_real_distribution<float> hiss(-0.02f, 0.02f);
    const qint64 frames = qint64(kSeconds * rate);
    std::vector<float> block(size_t(rate) * channels);
    for (qint64 start = 0; start < frames; start += rate) {
        const qint64 n = std::min<qint64>(rate, frames - start);
        for (qint64 i = 0; i < n; ++i) {
            const double t = double(start + i) / rate;
            const double sweep = 220 + 110 * std::sin(t * 0.5);
            const float left = float(0.3 * std::sin(2 * M_PI * sweep * t) +
                                     0.1 * std::sin(2 * M_PI * 3 * sweep * t));
            const float right = float(0.3 * std::sin(2 * M_PI * 1.5 * sweep * t));
            block[size_t(i * 2)] = left + hiss(noise);
            block[size_t(i * 2 + 1)] = right + hiss(noise);
        }
        sf_writef_float(file, block.data(), n);
    }
    return sf_close(file) == 0;
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// Times a run that reports its end through `finished`, watching the UI thread's pauses:
// a 1 ms timer on it must keep ticking while the worker converts. The call that starts the
// run (which in a window also stores settings and opens the files) is timed apart.
struct Timed {
    double seconds = 0;
    double startMs = 0;
    double longestPauseMs = 0;
};

Timed timeOurs(const std::function<void()>& start, const std::function<bool()>& finished) {
    QElapsedTimer clock, sinceTick;
    double longest = 0;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        longest = std::max(longest, double(sinceTick.nsecsElapsed()) / 1e6);
        sinceTick.restart();
    });
    clock.start();
    start();
    const double startMs = double(clock.nsecsElapsed()) / 1e6;
    sinceTick.start();
    ticker.start(1);
    while (!finished()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return {double(clock.nsecsElapsed()) / 1e9, startMs, longest};
}

// Seconds a tool takes, or a negative number when it isn't installed or fails.
double timeTool(const QString& program, const QStringList& args) {
    if (QStandardPaths::findExecutable(program).isEmpty()) return -1;
    QElapsedTimer clock;
    clock.start();
    const int code = QProcess::execute(program, args);
    return code == 0 ? double(clock.nsecsElapsed()) / 1e9 : -1;
}

// One comparison: our run and the tool's, alternately, `runs` times; then one line.
struct Comparison {
    const char* what;
    int runs;
    std::function<void()> start;     // starts our run
    std::function<bool()> finished;  // our run has ended
    const char* tool;                // as printed
    QString program;
    QStringList args;
};

void compare(const Comparison& c) {
    std::vector<double> ours, theirs;
    double pause = 0, startMs = 0;
    for (int i = 0; i < c.runs; ++i) {
        const Timed t = timeOurs(c.start, c.finished);
        ours.push_back(t.seconds);
        pause = std::max(pause, t.longestPauseMs);
        startMs = std::max(startMs, t.startMs);
        theirs.push_back(timeTool(c.program, c.args));
    }
    const double o = median(ours);
    std::printf("%-28s ours %7.3f s", c.what, o);
    if (theirs.front() >= 0) {
        const double t = median(theirs);
        std::printf("   %-12s %7.3f s   speed ratio %.2f", c.tool, t, t / o);
    } else {
        std::printf("   %-12s not installed", c.tool);
    }
    std::printf("   longest UI pause %.1f ms (starting call %.1f ms)\n", pause, startMs);
}

// What the user answers in the windows' dialogs: the output folder, the target format,
// and OK to every box.
class Answers : public FileDialogs {
  public:
    explicit Answers(QString folder) : folder_(std::move(folder)) {}
    FileDialogResult open(QWidget*, const FileDialogRequest&) override { return {}; }
    FileDialogResult save(QWidget*, const FileDialogRequest&) override { return {}; }
    QString browseForFolder(QWidget*, const QString&, const QString&) override { return folder_; }
    void setExtraPlaces(const QStringList&) override {}

  private:
    QString folder_;
};

class Boxes : public MsgBox {
  public:
    int show(const QString&, int style, const QString&, QWidget*) override {
        return Mb::buttonsOf(style) == Mb::YesNo ? Mb::Yes : Mb::OK;
    }
};

class HalfRate : public FormatChooser {
  protected:
    std::optional<WaveFormat> choose(const QString&, const WaveFormat&, QWidget*) override {
        return WaveFormat{WaveFormat::Pcm16, 22050, 2};
    }
};

// Runs of a conversion window: the source listed, the run command, until the list empties
// on success.
Comparison windowRun(const char* what, int runs, FileListForm& w, const QString& source,
                     const char* tool, const QString& program, const QStringList& args) {
    return {what,
            runs,
            [&w, source] {
                w.addEntry(source);
                w.RunMenu->trigger();
            },
            [&w] { return w.List1->count() == 0; },
            tool,
            program,
            args};
}

void compareWindows(const QTemporaryDir& dir, const QString& wav, const QString& mp3) {
    const QString out = dir.filePath("windows");
    QDir().mkpath(out);
    Components::provideService<MsgBox>(std::make_shared<Boxes>());
    Components::provideService<Clock>(std::make_shared<QtClock>());
    Components::provideService<Registry>(std::make_shared<RegistryStore>(dir.filePath("settings")));
    Components::provideService<FileDialogs>(std::make_shared<Answers>(out));
    Components::provideFactory<Mp3Encoder>([] { return std::make_unique<LameMp3Encoder>(); });
    Components::provideFactory<Mp3Decoder>([] { return std::make_unique<Mpg123Mp3Decoder>(); });
    Components::provideFactory<WaveChain>([] { return std::make_unique<SndfileWaveChain>(); });
    Components::provideFactory<FormatChooser>([] { return std::make_unique<HalfRate>(); });

    std::printf("\nthrough the windows:\n");
    compare(windowRun("WAV to MP3 window, 128", kEncodeRuns, Forms::touch<frmEncode>(), wav,
                      "lame -b 128", "lame",
                      {"--quiet", "-b", "128", wav, dir.filePath("lame.mp3")}));
    compare(windowRun("MP3 to WAV window", kShortRuns, Forms::touch<frmDecode>(), mp3, "mpg123 -w",
                      "mpg123", {"-q", "-w", dir.filePath("mpg123.wav"), mp3}));
    // The batch window's caption stays at its stop after a complete run: one click puts
    // it right before each run.
    frmBatchConvert& batch = Forms::touch<frmBatchConvert>();
    Comparison halve = windowRun("Batch 44.1 to 22.05 kHz", kShortRuns, batch, wav, "sox", "sox",
                                 {wav, "-r", "22050", dir.filePath("sox.wav")});
    halve.start = [&batch, wav] {
        batch.addEntry(wav);
        if (batch.ConvertMenu->text() != QLatin1String("&Start Conversion"))
            batch.ConvertMenu->trigger();
        batch.ConvertMenu->trigger();
    };
    compare(halve);
    UnloadAllForms();
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    const QString wav = dir.filePath("source.wav");
    const QString mp3 = dir.filePath("source.mp3");
    if (!writeSource(wav)) {
        std::fprintf(stderr, "can't write the source WAV\n");
        return 1;
    }
    std::printf("input: %.0f s of 44.1 kHz 16-bit stereo; medians of %d (encoding) and %d runs\n\n",
                kSeconds, kEncodeRuns, kShortRuns);

    LameMp3Encoder encoder;
    encoder.setBitrate(128000);
    bool encoded = false;
    QObject::connect(&encoder, &Mp3Encoder::EncodeDone, [&] { encoded = true; });
    compare({"WAV to MP3, 128 kbit/s",
             kEncodeRuns,
             [&] {
                 encoded = false;
                 encoder.SetFiles(wav, mp3);
                 encoder.Start();
             },
             [&] { return encoded; },
             "lame -b 128",
             "lame",
             {"--quiet", "-b", "128", wav, dir.filePath("lame.mp3")}});

    Mpg123Mp3Decoder decoder;
    bool decoded = false;
    QObject::connect(&decoder, &Mp3Decoder::DecodeDone, [&] { decoded = true; });
    compare({"MP3 to WAV",
             kShortRuns,
             [&] {
                 decoded = false;
                 decoder.SetFiles(mp3, dir.filePath("decoded.wav"));
                 decoder.StartDecode();
             },
             [&] { return decoded; },
             "mpg123 -w",
             "mpg123",
             {"-q", "-w", dir.filePath("mpg123.wav"), mp3}});

    SndfileWaveChain chain;
    bool stopped = false;
    QObject::connect(&chain, &WaveChain::TriggerDataEnd, &chain, &WaveChain::Stop);
    QObject::connect(&chain, &WaveChain::TriggerStopped, [&] { stopped = true; });
    chain.setTargetFormat(WaveFormat{WaveFormat::Pcm16, 22050, 2});
    compare({"WAV 44.1 kHz to 22.05 kHz",
             kShortRuns,
             [&] {
                 stopped = false;
                 chain.setSrcFileName(wav);
                 chain.setDstFileName(dir.filePath("half.wav"));
                 chain.Start();
             },
             [&] { return stopped; },
             "sox",
             "sox",
             {wav, "-r", "22050", dir.filePath("sox.wav")}});

    compareWindows(dir, wav, mp3);
    return 0;
}
