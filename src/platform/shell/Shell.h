#pragma once
// The desktop around the program: launching documents, folders, addresses, mail and
// programs; the recently-used documents list; the Trash.

#include <QString>
#include <QStringList>

namespace cantovel {

class Shell {
  public:
    virtual ~Shell() = default;

    // Opens a document, folder, web address or "mailto:" address with the desktop's
    // handler. Returns a classic shell result: above 32 for success, else an error code
    // (2 file not found, 3 path not found, 5 access denied, 31 no association).
    virtual int open(const QString& target) = 0;
    // Opens a local document in its handler, never running it even when it carries the
    // execute bit, as a process we can follow (the opener's). Same kind of code as `open`;
    // on success `pid` holds that process.
    virtual int openDocument(const QString& path, qint64* pid) = 0;
    // Starts a program (or opens a document) as a process we can follow. Returns the same
    // kind of code; on success `pid` holds the started process.
    virtual int start(const QString& program, const QStringList& arguments,
                      const QString& workingFolder, qint64* pid) = 0;
    virtual bool isRunning(qint64 pid) = 0;
    // Prints a document on the default printer. Same kind of code as `open`.
    virtual int print(const QString& path) = 0;
    // Adds a file to the desktop's recently-used documents.
    virtual void addRecentDocument(const QString& path) = 0;
    // Moves a file to the desktop's Trash; false when it could not.
    virtual bool moveToTrash(const QString& path) = 0;

    static Shell& get();
};

}  // namespace cantovel
