#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QTimer>

#include "platform/dialogs/QtFileDialogs.h"

using namespace cantovel;

TEST(FileDialogs, ClassicFiltersBecomeQtFilters) {
    EXPECT_EQ(qtNameFilters("Audio|*.wav;*.mp3|All|*.*"),
              QStringList({"Audio (*.wav *.mp3)", "All (*.*)"}));
    // A description with its own parentheses keeps them; ours come last.
    EXPECT_EQ(qtNameFilters("Playlists (*.ply)|*.ply"), QStringList({"Playlists (*.ply) (*.ply)"}));
    // A description without a pattern is dropped; blanks around patterns go.
    EXPECT_EQ(qtNameFilters("Wave| *.wav ; |Orphan"), QStringList({"Wave (*.wav)"}));
    EXPECT_TRUE(qtNameFilters("").isEmpty());
}

namespace {

// Answers the next file dialog that opens: picks `name` in it and accepts.
void answerNextDialog(const QString& name, const QString& filter = {}) {
    QTimer::singleShot(0, [=] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        if (!filter.isEmpty()) dialog->selectNameFilter(filter);
        dialog->selectFile(name);
        QMetaObject::invokeMethod(dialog, "accept");
    });
}

}  // namespace

TEST(FileDialogs, SaveAddsTheDefaultExtensionAndReportsTheFilter) {
    QTemporaryDir dir;
    QtFileDialogs dialogs;
    FileDialogRequest request;
    request.filter = "Playlist|*.ply|M3U|*.m3u";
    request.initDir = dir.path();
    request.defaultExt = "ply";
    request.filterIndex = 2;
    answerNextDialog("mylist", "Playlist (*.ply)");
    const FileDialogResult r = dialogs.save(nullptr, request);
    ASSERT_FALSE(r.cancelled);
    EXPECT_EQ(r.file(), QDir(dir.path()).filePath("mylist.ply"));
    EXPECT_EQ(r.filterIndex, 1);
}

TEST(FileDialogs, OpenSeveralOrAFolderAndCancel) {
    QTemporaryDir dir;
    for (const char* n : {"a.wav", "b.wav"}) {
        QFile f(QDir(dir.path()).filePath(n));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
    QtFileDialogs dialogs;
    dialogs.setExtraPlaces({dir.path()});
    FileDialogRequest request;
    request.initDir = dir.path();
    request.multiSelect = true;
    answerNextDialog("\"a.wav\" \"b.wav\"");
    FileDialogResult r = dialogs.open(nullptr, request);
    ASSERT_FALSE(r.cancelled);
    EXPECT_EQ(r.files, QStringList({QDir(dir.path()).filePath("a.wav"),
                                    QDir(dir.path()).filePath("b.wav")}));

    QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
    r = dialogs.open(nullptr, request);
    EXPECT_TRUE(r.cancelled);
    EXPECT_TRUE(r.files.isEmpty());

    // A folder choice starts where asked; its cancel gives an empty text.
    QDir(dir.path()).mkdir("out");
    QString title, shownDir;
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        title = dialog->windowTitle();
        shownDir = dialog->directory().absolutePath();
        dialog->selectFile(QDir(dir.path()).filePath("out"));
        QMetaObject::invokeMethod(dialog, "accept");
    });
    EXPECT_EQ(dialogs.browseForFolder(nullptr, "Select Folder for WAV Output:", dir.path()),
              QDir(dir.path()).filePath("out"));
    EXPECT_EQ(title, "Select Folder for WAV Output:");
    EXPECT_EQ(shownDir, QDir(dir.path()).absolutePath());

    QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
    EXPECT_EQ(dialogs.browseForFolder(nullptr, "Pick", dir.path()), QString());
}
