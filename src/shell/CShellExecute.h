#pragma once
// Starts documents, addresses, mail and programs through the desktop, and tells whether
// the process of the last launch still runs. Every operation answers the shell's result
// code through its last argument: above 32 is success, else a code ErrorText explains.
// `hWnd` (the owner) and `show` (a show-window number) are taken for the callers' sake;
// the desktop decides how a handler's window appears.

#include <QString>

class QWidget;

namespace cantovel {

class CShellExecute {
  public:
    // True while the process of the last launch runs; only LaunchDocument and
    // LaunchProgram keep a process to follow.
    void StillExecuting(bool& running);
    void Explore(QWidget* hWnd, const QString& folder, int show, long& result);
    void LaunchDocument(QWidget* hWnd, const QString& file, const QString& parameters, int show,
                        long& result);
    void LaunchEmail(QWidget* hWnd, const QString& address, int show, long& result);
    void LaunchFolder(QWidget* hWnd, const QString& folder, int show, long& result);
    void LaunchProgram(QWidget* hWnd, const QString& program, const QString& parameters,
                       const QString& workingFolder, int show, long& result);
    void LaunchURL(QWidget* hWnd, const QString& url, int show, long& result);
    void PrintDocument(QWidget* hWnd, const QString& file, long& result);

    // The text for a shell result; empty for a success (above 32).
    static QString ErrorText(long code);

    qint32 HasProcess() const { return hasProcess_; }
    qint64 ProcessHandle() const { return processHandle_; }

  private:
    void forgetProcess();
    void follow(long result, qint64 pid);
    void launch(const char* member, const QString& program, const QString& parameters,
                const QString& workingFolder, long& result);
    void open(const char* member, const QString& target, long& result);

    qint32 hasProcess_ = 0;
    qint64 processHandle_ = 0;
};

}  // namespace cantovel
