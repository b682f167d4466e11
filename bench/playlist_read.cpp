// Reading a 100,000-line ".m3u" of existing files into both lists: the main window's
// List1 and the editor's lstPlayList. The budget is under a second.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "PlaylistBench.h"
#include "player/frmMain.h"
#include "playlist/frmPlaylist.h"

using namespace cantovel;

namespace {

constexpr int LineCount = 100000;
constexpr int FileCount = 2000;

struct Fixture {
    QTemporaryDir dir;
    QString list;
    frmMain* main = nullptr;
    frmPlaylist* editor = nullptr;

    Fixture() {
        bench::provideWindowServices(dir.path() + "/reg");
        QDir().mkpath(dir.path() + "/music");
        QStringList files;
        for (int i = 0; i < FileCount; ++i) {
            files << dir.path() + QStringLiteral("/music/Track %1 of the album.mp3").arg(i);
            QFile f(files.last());
            if (!f.open(QIODevice::WriteOnly)) std::abort();
        }
        QByteArray text;
        for (int i = 0; i < LineCount; ++i) text += files[i % FileCount].toLocal8Bit() + "\r\n";
        list = dir.path() + "/big.m3u";
        QFile f(list);
        if (!f.open(QIODevice::WriteOnly) || f.write(text) != text.size()) std::abort();
        f.close();
        main = new frmMain();
        editor = new frmPlaylist();
    }
};

void BM_ReadHundredThousandLines(benchmark::State& state) {
    static Fixture fx;
    for (auto _ : state) {
        fx.editor->ClearLists();
        fx.editor->AppendPlaylist(fx.list);
        // The list lays itself out as the window would before it paints.
        QApplication::processEvents();
    }
    if (fx.main->List1.size() != LineCount || fx.editor->lstPlayList->ListCount() != LineCount) {
        std::fprintf(stderr, "the lists did not get every line\n");
        std::abort();
    }
}
BENCHMARK(BM_ReadHundredThousandLines)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

int main(int argc, char** argv) {
    return cantovel::bench::runInQtApplication(argc, argv);
}
