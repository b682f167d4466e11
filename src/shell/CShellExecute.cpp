#include "shell/CShellExecute.h"

#include <QProcess>

#include "platform/shell/Shell.h"
#include "shell/MemberError.h"

namespace cantovel {

void CShellExecute::forgetProcess() {
    hasProcess_ = 0;
    processHandle_ = 0;
}

void CShellExecute::StillExecuting(bool& running) {
    running = false;
    MemberError::guard("StillExecuting", [&] {
        if (hasProcess_) running = Shell::get().isRunning(processHandle_);
    });
}

// The launches that go through the desktop's handlers keep no process.
void CShellExecute::open(const char* member, const QString& target, long& result) {
    result = 0;
    forgetProcess();
    MemberError::guard(member, [&] { result = Shell::get().open(target); });
}

void CShellExecute::launch(const char* member, const QString& program, const QString& parameters,
                           const QString& workingFolder, long& result) {
    result = 0;
    forgetProcess();
    MemberError::guard(member, [&] {
        qint64 pid = 0;
        result =
            Shell::get().start(program, QProcess::splitCommand(parameters), workingFolder, &pid);
        follow(result, pid);
    });
}

void CShellExecute::follow(long result, qint64 pid) {
    if (result > 32 && pid > 0) {
        hasProcess_ = 1;
        processHandle_ = pid;
    }
}

void CShellExecute::Explore(QWidget*, const QString& folder, int, long& result) {
    open("Explore", folder, result);
}

// A document opens in its handler, even one with the execute bit (every file on FAT, NTFS
// and SMB mounts has it); the handler takes no parameters from us.
void CShellExecute::LaunchDocument(QWidget*, const QString& file, const QString&, int,
                                   long& result) {
    result = 0;
    forgetProcess();
    MemberError::guard("LaunchDocument", [&] {
        qint64 pid = 0;
        result = Shell::get().openDocument(file, &pid);
        follow(result, pid);
    });
}

void CShellExecute::LaunchEmail(QWidget*, const QString& address, int, long& result) {
    open("LaunchEmail", QStringLiteral("mailto:") + address, result);
}

void CShellExecute::LaunchFolder(QWidget*, const QString& folder, int, long& result) {
    open("LaunchFolder", folder, result);
}

void CShellExecute::LaunchProgram(QWidget*, const QString& program, const QString& parameters,
                                  const QString& workingFolder, int, long& result) {
    launch("LaunchProgram", program, parameters, workingFolder, result);
}

void CShellExecute::LaunchURL(QWidget*, const QString& url, int, long& result) {
    open("LaunchURL", url, result);
}

void CShellExecute::PrintDocument(QWidget*, const QString& file, long& result) {
    result = 0;
    forgetProcess();
    MemberError::guard("PrintDocument", [&] { result = Shell::get().print(file); });
}

QString CShellExecute::ErrorText(long code) {
    if (code > 32) return {};
    switch (code) {
        case 0:
            return QStringLiteral("Memory Error");
        case 11:
            return QStringLiteral("Bad Executeable Format");
        case 2:
            return QStringLiteral("File not found");
        case 3:
            return QStringLiteral("Path not found");
        case 5:
            return QStringLiteral("Access Denied");
        case 27:
            return QStringLiteral("Association incomplete");
        case 30:
            return QStringLiteral("DDE Busy error");
        case 29:
            return QStringLiteral("DDE failed");
        case 28:
            return QStringLiteral("DEE time out");
        case 31:
            return QStringLiteral("No association for this file");
        case 8:
            return QStringLiteral("Out of Memory");
        case 32:
            return QStringLiteral("Path could not be found");
        case 26:
            return QStringLiteral("Sharing violation");
        default:
            return QStringLiteral("Unknown Error!, Please try again...");
    }
}

}  // namespace cantovel
