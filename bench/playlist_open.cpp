// Opening a ".ply" that is no playlist at all (200 MB of random bytes) and one of 100,000
// lines naming missing files, handed over as a later start does: the time until the main
// window answers again. Budgets: under 2 s and under 0.5 s.
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "app/ProductionComponents.h"
#include "platform/Components.h"
#include "platform/msgbox/MsgBox.h"
#include "platform/registry/RegistryStore.h"
#include "player/frmMain.h"

using namespace cantovel;

namespace {

// Nobody clicks during a benchmark: every box is answered at once.
class AnsweringMsgBox : public MsgBox {
  public:
    int show(const QString&, int, const QString&, QWidget*) override { return Mb::OK; }
};

void write(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size()) std::abort();
}

// Median of five opens, in milliseconds, each until the window has handled its events.
double timeOpen(frmMain& main, const QString& path) {
    std::vector<double> runs;
    for (int i = 0; i < 5; ++i) {
        QElapsedTimer t;
        t.start();
        main.Form_LinkExecute(QLatin1Char('"') + path + QLatin1Char('"'));
        QApplication::processEvents();
        runs.push_back(t.nsecsElapsed() / 1e6);
    }
    std::sort(runs.begin(), runs.end());
    return runs[runs.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QTemporaryDir dir;
    registerProductionComponents();
    Components::provideService<Registry>(std::make_shared<RegistryStore>(dir.path() + "/reg"));
    Components::provideService<MsgBox>(std::make_shared<AnsweringMsgBox>());

    const QString garbage = dir.path() + "/garbage.ply";
    {
        std::mt19937_64 random(1);
        QByteArray bytes(200 << 20, Qt::Uninitialized);
        auto* words = reinterpret_cast<quint64*>(bytes.data());
        for (qsizetype i = 0; i < bytes.size() / 8; ++i) words[i] = random();
        write(garbage, bytes);
    }
    const QString missing = dir.path() + "/missing.ply";
    {
        QByteArray text;
        for (int i = 0; i < 100000; ++i)
            text += dir.path().toLocal8Bit() + "/gone/Track " + QByteArray::number(i) + ".mp3\r\n";
        write(missing, text);
    }

    auto* main = new frmMain();
    main->Form_Load(QString());
    std::printf("%-44s %10s %10s\n", "open, until the window answers", "median ms", "budget ms");
    std::printf("%-44s %10.1f %10d\n", "200 MB of random bytes as .ply", timeOpen(*main, garbage),
                2000);
    std::printf("%-44s %10.1f %10d\n", ".ply of 100,000 missing files", timeOpen(*main, missing),
                500);
    return 0;
}
