#include "support/FakeFileDialogs.h"

namespace cantovel::test {

FileDialogResult FakeFileDialogs::next(const DialogCall& call) {
    calls.append(call);
    if (onShow) onShow(call);
    if (answers_.empty()) return {};
    FileDialogResult r = answers_.front();
    answers_.pop_front();
    return r;
}

FileDialogResult FakeFileDialogs::open(QWidget* owner, const FileDialogRequest& request) {
    FileDialogResult r = next({DialogCall::Open, owner, request, {}, {}});
    // A single-file dialog never answers more than one file.
    if (!request.multiSelect && r.files.size() > 1) r.files = r.files.mid(0, 1);
    return r;
}

FileDialogResult FakeFileDialogs::save(QWidget* owner, const FileDialogRequest& request) {
    return next({DialogCall::Save, owner, request, {}, {}});
}

QString FakeFileDialogs::browseForFolder(QWidget* owner, const QString& prompt,
                                         const QString& startFolder) {
    const FileDialogResult r = next({DialogCall::Folder, owner, {}, prompt, startFolder});
    return r.cancelled ? QString() : r.file();
}

void FakeFileDialogs::scriptFiles(const QStringList& files, int filterIndex) {
    FileDialogResult r;
    r.cancelled = false;
    r.files = files;
    r.filterIndex = filterIndex;
    answers_.push_back(r);
}

void FakeFileDialogs::scriptCancel() {
    answers_.push_back(FileDialogResult{});
}

void FakeFileDialogs::reset() {
    calls.clear();
    answers_.clear();
    extraPlaces.clear();
}

}  // namespace cantovel::test
