#pragma once
#include "platform/shell/Shell.h"

namespace cantovel {

// The freedesktop desktop: handlers through xdg-open, programs through QProcess, the XBEL
// recently-used list, the freedesktop Trash.
class DesktopShell : public Shell {
  public:
    int open(const QString& target) override;
    int openDocument(const QString& path, qint64* pid) override;
    int start(const QString& program, const QStringList& arguments, const QString& workingFolder,
              qint64* pid) override;
    bool isRunning(qint64 pid) override;
    int print(const QString& path) override;
    void addRecentDocument(const QString& path) override;
    bool moveToTrash(const QString& path) override;

    // The recently-used list of the desktop: $XDG_DATA_HOME/recently-used.xbel.
    static QString recentListPath();

    // How long the opener is given to say that nothing can show a target. xdg-open gives
    // up at once when it finds no handler, but on some desktops it stays until the
    // handler it started ends, so one still running then has found its handler.
    static constexpr int OpenerVerdictMs = 3000;
};

}  // namespace cantovel
