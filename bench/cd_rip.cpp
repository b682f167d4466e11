// Ripping speed of the CD reader's copy against `cdparanoia` on the same disc image, side
// by side in one run. Prints times and the speed ratio (tool time / our time: above 1 is
// faster than the tool). It measures only; it never fails on time.
//
// The tool: libcdio's `cd-paranoia`, which reads images, when it is installed; else
// `cdparanoia` if it can open the image. Xiph's cdparanoia reads only real drives, so on a
// machine with neither the reference is cdparanoia's own loop on the same paranoia
// library, run in-process: one sector a paranoia read, fwrite to a WAV. Both sides read in
// cdparanoia's default mode (full paranoia without skipping); the copy's burst mode, with
// no verification, is shown as well.

#include <cdio/cdio.h>
#include <cdio/paranoia/cdda.h>
#include <cdio/paranoia/paranoia.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include "platform/cdreader/CdRipper.h"

using namespace cantovel;

namespace {

constexpr int kRuns = 5;
constexpr int kSectorBytes = 2352;

// One audio track of `seconds` of noisy tones.
QString writeImage(const QString& dir, int seconds) {
    const QString bin = dir + QStringLiteral("/bench.bin");
    QFile out(bin);
    if (!out.open(QIODevice::WriteOnly)) return {};
    std::mt19937 noise(11);
    std::uniform_int_distribution<int> hiss(-300, 300);
    std::vector<qint16> block(size_t(44100) * 2);
    for (int s = 0; s < seconds; ++s) {
        for (size_t i = 0; i < block.size(); i += 2) {
            const double t = s + double(i / 2) / 44100;
            block[i] = qint16(8000 * std::sin(2 * M_PI * 440 * t) + hiss(noise));
            block[i + 1] = qint16(6000 * std::sin(2 * M_PI * 660 * t) + hiss(noise));
        }
        out.write(reinterpret_cast<const char*>(block.data()), qint64(block.size() * 2));
    }
    QFile cue(dir + QStringLiteral("/bench.cue"));
    if (!cue.open(QIODevice::WriteOnly)) return {};
    cue.write("FILE \"bench.bin\" BINARY\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n");
    return cue.fileName();
}

// cdparanoia's rip loop, on the library, for machines whose tool cannot read images.
bool referenceRip(const QString& image, qint64 sectors, const QString& wav) {
    CdIo_t* cdio = cdio_open(QFile::encodeName(image).constData(), DRIVER_UNKNOWN);
    if (!cdio) return false;
    cdrom_drive_t* d = cdio_cddap_identify_cdio(cdio, CDDA_MESSAGE_FORGETIT, nullptr);
    if (!d || cdio_cddap_open(d) != 0) return false;
    cdrom_paranoia_t* p = cdio_paranoia_init(d);
    cdio_paranoia_modeset(p, PARANOIA_MODE_FULL ^ PARANOIA_MODE_NEVERSKIP);
    cdio_paranoia_seek(p, 0, SEEK_SET);
    FILE* f = std::fopen(QFile::encodeName(wav).constData(), "wb");
    bool ok = f != nullptr;
    char header[44] = {};
    if (ok) std::fwrite(header, 1, sizeof header, f);  // a real tool fills it in at the end
    for (qint64 i = 0; ok && i < sectors; ++i) {
        const int16_t* sector = cdio_paranoia_read(p, nullptr);
        ok = sector && std::fwrite(sector, 1, kSectorBytes, f) == size_t(kSectorBytes);
    }
    if (f) std::fclose(f);
    cdio_paranoia_free(p);
    cdio_cddap_close(d);
    return ok;
}

// The image-reading tool, and its arguments for a rip to `wav`; empty when there is none.
QStringList toolCommand(const QString& image, const QString& wav) {
    for (const char* name : {"cd-paranoia", "cdparanoia"}) {
        const QString tool = QStandardPaths::findExecutable(QString::fromLatin1(name));
        if (tool.isEmpty()) continue;
        const QStringList args = {tool,  QStringLiteral("-q"), QStringLiteral("-d"),
                                  image, QStringLiteral("-w"), QStringLiteral("1"),
                                  wav};
        QProcess probe;
        probe.start(args[0], args.mid(1));
        if (probe.waitForFinished(600000) && probe.exitCode() == 0 && QFile::exists(wav))
            return args;
    }
    return {};
}

double bestOf(const std::function<bool()>& run) {
    double best = 1e9;
    for (int i = 0; i < kRuns; ++i) {
        QElapsedTimer t;
        t.start();
        if (!run()) return -1;
        best = std::min(best, t.nsecsElapsed() / 1e9);
    }
    return best;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int seconds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 600;
    QTemporaryDir dir;
    const QString image = writeImage(dir.path(), seconds);
    if (image.isEmpty()) {
        std::fprintf(stderr, "cannot write the image\n");
        return 1;
    }
    const qint64 sectors = qint64(seconds) * 75;
    const QString toolWav = dir.filePath(QStringLiteral("tool.wav"));
    const QStringList tool = toolCommand(image, toolWav);

    const double reference = bestOf([&] {
        if (tool.isEmpty()) return referenceRip(image, sectors, toolWav);
        return QProcess::execute(tool[0], tool.mid(1)) == 0;
    });
    auto ours = [&](int mode) {
        return bestOf([&] {
            CdRipper::Job job;
            job.device = image;
            job.count = sectors;
            job.fileName = dir.filePath(QStringLiteral("ours.wav"));
            job.copyMode = mode;
            return CdRipper::run(job, {}) == CdRipper::Outcome::Done;
        });
    };
    const double full = ours(0);
    const double burst = ours(1);
    if (reference < 0 || full < 0 || burst < 0) {
        std::fprintf(stderr, "a rip failed\n");
        return 1;
    }
    std::printf("CD rip of %d s of audio (%lld sectors), best of %d\n", seconds,
                static_cast<long long>(sectors), kRuns);
    std::printf("  reference  %-40s %8.3f s\n",
                tool.isEmpty() ? "cdparanoia's loop on libcdio-paranoia"
                               : qPrintable(tool.mid(0, 1).join(' ')),
                reference);
    std::printf("  ours, full paranoia (mode 0)              %8.3f s   ratio %.2f\n", full,
                reference / full);
    std::printf("  ours, burst (mode 1, the default)         %8.3f s   ratio %.2f\n", burst,
                reference / burst);
    return 0;
}
