#pragma once
// Records every call on the desktop and answers as told; nothing is launched.

#include <QList>
#include <QSet>

#include "platform/shell/Shell.h"

namespace cantovel::test {

struct StartedProgram {
    QString program;
    QStringList arguments;
    QString workingFolder;
    qint64 pid = 0;
};

class FakeShell : public Shell {
  public:
    int open(const QString& target) override;
    // Recorded among `opened`; the opener runs (a pid from `nextPid`) until `finish`.
    int openDocument(const QString& path, qint64* pid) override;
    int start(const QString& program, const QStringList& arguments, const QString& workingFolder,
              qint64* pid) override;
    bool isRunning(qint64 pid) override;
    int print(const QString& path) override;
    void addRecentDocument(const QString& path) override { recent << path; }
    bool moveToTrash(const QString& path) override;

    // Answers.
    int openResult = 42;
    int startResult = 42;
    int printResult = 42;
    bool trashResult = true;
    // Started processes get pids from here up and run until `finish` is called.
    qint64 nextPid = 1000;
    void finish(qint64 pid) { running_.remove(pid); }

    // What was asked.
    QStringList opened;
    QList<StartedProgram> started;
    QStringList printed;
    QStringList recent;
    QStringList trashed;

  private:
    QSet<qint64> running_;
};

}  // namespace cantovel::test
