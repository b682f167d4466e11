#include "cd/frmCDDBMatches.h"

#include <QGuiApplication>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <limits>

#include "cd/CdBase_Code.h"
#include "platform/clock/Clock.h"

namespace cantovel {

frmCDDBMatches::frmCDDBMatches() : Form(QStringLiteral("frmCDDBMatches")) {
    setWindowTitle(QStringLiteral("Select From Close Matches"));
    auto* layout = new QVBoxLayout(this);
    lstMatches = new QListWidget(this);
    cmdSelect = new QPushButton(QStringLiteral("&Select"), this);
    layout->addWidget(lstMatches);
    layout->addWidget(cmdSelect);
    resize(420, 260);
    connect(cmdSelect, &QPushButton::clicked, this, [this] { cmdSelect_Click(); });
    connect(lstMatches, &QListWidget::itemDoubleClicked, this, [this] { cmdSelect_Click(); });

    const int rows = std::min<int>(CloseMatchCount, int(CloseMatches.size()) - 1);
    for (int i = 1; i <= rows; ++i)
        lstMatches->addItem(CloseMatches[i].Title + QStringLiteral(" / ") +
                            CloseMatches[i].Category);
    if (lstMatches->count() > 0) lstMatches->setCurrentRow(0);
}

void frmCDDBMatches::take(int row) {
    if (row < 1 || row >= int(CloseMatches.size())) return;
    MatchCategory = CloseMatches[row].Category;
    MatchDiscId = CloseMatches[row].DiscId;
    MatchTitle = CloseMatches[row].Title;
}

void frmCDDBMatches::cmdSelect_Click() {
    take(lstMatches->currentRow() + 1);
    unload();
}

bool frmCDDBMatches::unloadEvent() {
    // There is no way out of the read: closing without a choice reads the first match.
    if (MatchDiscId.isEmpty()) take(1);
    return false;
}

void frmCDDBMatches::choose(int left, int top) {
    QPointer<frmCDDBMatches> window(new frmCDDBMatches);
    const QRect screen = QGuiApplication::primaryScreen()
                             ? QGuiApplication::primaryScreen()->geometry()
                             : QRect(0, 0, 1024, 768);
    window->move(left != 0 ? left : screen.width() / 2 - window->width(),
                 top != 0 ? top : screen.height() / 2 - window->height());
    window->setWindowModality(Qt::ApplicationModal);
    window->show();
    const auto closed = [&window] {
        return !window || window->isUnloading() || window->isHidden();
    };
    while (!closed()) Clock::get().wait(std::numeric_limits<int>::max(), closed);
    if (window && !window->isUnloading()) window->unload();
}

}  // namespace cantovel
