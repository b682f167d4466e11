// The CDDB access player's traffic log taking a 10 MB answer on one line, in the 64 KB
// pieces a socket hands over: the whole append, and the longest single piece (how long the
// window could not answer the user), each piece followed by the repaint it causes.
#include <QApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>

#include "cd/TrafficLog.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    constexpr int kPiece = 64 * 1024, kPieces = 160;
    cantovel::TrafficLog log;
    log.resize(600, 200);
    log.show();
    QApplication::processEvents();
    QElapsedTimer all;
    all.start();
    log.append(QStringLiteral("210 rock 0e021a03 follows\r\nDTITLE="));
    qint64 worst = 0;
    for (int i = 0; i < kPieces; ++i) {
        QElapsedTimer piece;
        piece.start();
        log.append(QString(kPiece, u'A'));
        log.viewport()->repaint();
        QApplication::processEvents();
        worst = std::max(worst, piece.elapsed());
    }
    log.append(QStringLiteral("\r\n.\r\nquit\r\n"));
    std::printf(
        "10 MB answer in %d pieces of 64 KB: %lld ms in all, longest piece %lld ms, "
        "%lld characters kept\n",
        kPieces, static_cast<long long>(all.elapsed()), static_cast<long long>(worst),
        static_cast<long long>(log.toPlainText().size()));
    return log.toPlainText().size() > qsizetype(kPiece) * kPieces ? 0 : 1;
}
