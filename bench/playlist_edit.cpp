// Editing a 100,000-row playlist: removing 50,000 scattered selected rows (every other
// one, so as many runs as rows) and Delete Duplicates over all of it. The budget for
// each is under a second.
#include <QApplication>
#include <QItemSelection>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "PlaylistBench.h"
#include "player/frmMain.h"
#include "playlist/frmPlaylist.h"
#include "playlist/frmTemp2.h"

using namespace cantovel;

namespace {

constexpr int RowCount = 100000;

struct Fixture {
    QTemporaryDir dir;
    QStringList paths;
    frmMain* main = nullptr;
    frmPlaylist* editor = nullptr;

    Fixture() {
        bench::provideWindowServices(dir.path() + "/reg");
        // A real collection repeats itself: a tenth of the rows are distinct.
        for (int i = 0; i < RowCount; ++i)
            paths
                << QStringLiteral("/home/me/Music/Album %1/Track %2.mp3").arg(i % 100).arg(i % 97);
        main = new frmMain();
        editor = new frmPlaylist();
    }
    void fill() {
        editor->ClearLists();
        editor->AppendRows(paths);
        QApplication::processEvents();
    }
};

Fixture& fixture() {
    static Fixture fx;
    return fx;
}

void BM_RemoveFiftyThousandScatteredRows(benchmark::State& state) {
    Fixture& fx = fixture();
    for (auto _ : state) {
        state.PauseTiming();
        fx.fill();
        PlaylistListBox& list = *fx.editor->lstPlayList;
        QItemSelection every;
        for (int i = 0; i < RowCount; i += 2)
            every.select(list.model()->index(i, 0), list.model()->index(i, 0));
        list.selectionModel()->select(every, QItemSelectionModel::Select);
        state.ResumeTiming();
        fx.editor->mnuRemove();
        QApplication::processEvents();
    }
    if (fx.main->List1.size() != RowCount / 2 ||
        fx.editor->lstPlayList->ListCount() != RowCount / 2) {
        std::fprintf(stderr, "the wrong rows went\n");
        std::abort();
    }
}
BENCHMARK(BM_RemoveFiftyThousandScatteredRows)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_DeleteDuplicatesOfAHundredThousandRows(benchmark::State& state) {
    Fixture& fx = fixture();
    for (auto _ : state) {
        state.PauseTiming();
        fx.fill();
        state.ResumeTiming();
        frmTemp2::get().mnuDeleteDupes->trigger();
        QApplication::processEvents();
    }
    if (fx.main->List1.size() >= RowCount) {
        std::fprintf(stderr, "nothing was thinned\n");
        std::abort();
    }
}
BENCHMARK(BM_DeleteDuplicatesOfAHundredThousandRows)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

int main(int argc, char** argv) {
    return cantovel::bench::runInQtApplication(argc, argv);
}
