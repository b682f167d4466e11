#pragma once
// The common file dialogs: open (one file or several), save, and folder choice.

#include <QString>
#include <QStringList>

class QWidget;

namespace cantovel {

struct FileDialogRequest {
    QString title;
    // Filter in the classic form "Description|*.a;*.b|All Files|*.*".
    QString filter;
    int filterIndex = 1;  // 1-based, as the classic dialog counts
    QString initDir;
    QString fileName;      // proposed name
    QString defaultExt;    // without the dot
    bool multiSelect = false;
    bool overwritePrompt = true;  // save dialog only
};

struct FileDialogResult {
    bool cancelled = true;
    QStringList files;     // full paths; one unless multiSelect
    int filterIndex = 1;
    QString file() const { return files.value(0); }
};

class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    virtual FileDialogResult open(QWidget* owner, const FileDialogRequest& request) = 0;
    virtual FileDialogResult save(QWidget* owner, const FileDialogRequest& request) = 0;
    // A folder, or the empty text when the user cancels.
    virtual QString browseForFolder(QWidget* owner, const QString& prompt,
                                    const QString& startFolder) = 0;
    // Folders shown in every dialog's side bar (the CD drives' track folders).
    virtual void setExtraPlaces(const QStringList& folders) = 0;

    static FileDialogs& get();
};

// "Audio|*.wav;*.mp3|All|*.*" -> {"Audio (*.wav *.mp3)", "All (*.*)"}
QStringList qtNameFilters(const QString& classicFilter);

}  // namespace cantovel
