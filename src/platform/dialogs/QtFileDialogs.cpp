#include "platform/dialogs/QtFileDialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <optional>

namespace cantovel {

namespace {

// The extension of a filter's first pattern: "Winamp Playlist (*.m3u)" gives "m3u"; none
// for a pattern that names no one extension.
std::optional<QString> filterExtension(const QString& filter) {
    static const QRegularExpression first(QStringLiteral("\\(\\*\\.([^*?\\[\\] ;)]+)[ ;)]"));
    const QRegularExpressionMatch m = first.match(filter);
    if (!m.hasMatch()) return std::nullopt;
    return m.captured(1);
}

}  // namespace

void QtFileDialogs::prepare(QFileDialog& dialog, const FileDialogRequest& request) const {
    if (!request.title.isEmpty()) dialog.setWindowTitle(request.title);
    const QStringList filters = qtNameFilters(request.filter);
    if (!filters.isEmpty()) {
        dialog.setNameFilters(filters);
        // An index out of range falls back to the first filter, as the classic dialog does.
        const int index = request.filterIndex - 1;
        dialog.selectNameFilter(filters.value(index >= 0 && index < filters.size() ? index : 0));
    }
    // A start folder that isn't there is ignored, leaving the dialog where it was.
    if (!request.initDir.isEmpty() && QFileInfo(request.initDir).isDir())
        dialog.setDirectory(request.initDir);
    if (!request.defaultExt.isEmpty()) {
        QString ext = request.defaultExt;
        if (ext.startsWith(QLatin1Char('.'))) ext.remove(0, 1);
        dialog.setDefaultSuffix(ext);
        // A name typed without an extension takes that of the type chosen in the dialog,
        // the default one only while the type has none of its own ("*.*").
        QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                         [&dialog, ext](const QString& filter) {
                             dialog.setDefaultSuffix(filterExtension(filter).value_or(ext));
                         });
    }
    addPlaces(dialog);
    if (!request.fileName.isEmpty()) dialog.selectFile(request.fileName);
}

void QtFileDialogs::addPlaces(QFileDialog& dialog) const {
    QList<QUrl> extra = places_;
    if (placesSource_)
        for (const QString& f : placesSource_())
            if (!f.isEmpty()) extra << QUrl::fromLocalFile(QDir::cleanPath(f));
    if (extra.isEmpty()) return;
    dialog.setOption(QFileDialog::DontUseNativeDialog, true);
    QList<QUrl> urls = dialog.sidebarUrls();
    for (const QUrl& u : extra)
        if (!urls.contains(u)) urls << u;
    dialog.setSidebarUrls(urls);
}

FileDialogResult QtFileDialogs::run(QFileDialog& dialog) {
    FileDialogResult result;
    if (dialog.exec() != QDialog::Accepted) return result;
    for (const QString& f : dialog.selectedFiles()) result.files << QDir::cleanPath(f);
    result.cancelled = result.files.isEmpty();
    const int index = dialog.nameFilters().indexOf(dialog.selectedNameFilter());
    result.filterIndex = index >= 0 ? index + 1 : 1;
    return result;
}

FileDialogResult QtFileDialogs::open(QWidget* owner, const FileDialogRequest& request) {
    QFileDialog dialog(owner);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(request.multiSelect ? QFileDialog::ExistingFiles
                                           : QFileDialog::ExistingFile);
    prepare(dialog, request);
    return run(dialog);
}

FileDialogResult QtFileDialogs::save(QWidget* owner, const FileDialogRequest& request) {
    QFileDialog dialog(owner);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.overwritePrompt);
    prepare(dialog, request);
    return run(dialog);
}

QString QtFileDialogs::browseForFolder(QWidget* owner, const QString& prompt,
                                       const QString& startFolder) {
    QFileDialog dialog(owner, prompt);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly, true);
    if (!startFolder.isEmpty() && QFileInfo(startFolder).isDir()) dialog.setDirectory(startFolder);
    addPlaces(dialog);
    if (dialog.exec() != QDialog::Accepted) return {};
    const QStringList chosen = dialog.selectedFiles();
    return chosen.isEmpty() ? QString() : QDir::cleanPath(chosen.first());
}

void QtFileDialogs::setExtraPlaces(const QStringList& folders) {
    places_.clear();
    for (const QString& f : folders)
        if (!f.isEmpty()) places_ << QUrl::fromLocalFile(QDir::cleanPath(f));
}

}  // namespace cantovel
