#include "support/FakeShell.h"

namespace cantovel::test {

int FakeShell::open(const QString& target) {
    opened << target;
    return openResult;
}

int FakeShell::openDocument(const QString& path, qint64* pid) {
    opened << path;
    qint64 started = 0;
    if (openResult > 32) {
        started = nextPid++;
        running_.insert(started);
    }
    if (pid) *pid = started;
    return openResult;
}

int FakeShell::start(const QString& program, const QStringList& arguments,
                     const QString& workingFolder, qint64* pid) {
    StartedProgram p{program, arguments, workingFolder, 0};
    if (startResult > 32) {
        p.pid = nextPid++;
        running_.insert(p.pid);
    }
    if (pid) *pid = p.pid;
    started << p;
    return startResult;
}

bool FakeShell::isRunning(qint64 pid) {
    return running_.contains(pid);
}

int FakeShell::print(const QString& path) {
    printed << path;
    return printResult;
}

bool FakeShell::moveToTrash(const QString& path) {
    trashed << path;
    return trashResult;
}

}  // namespace cantovel::test
