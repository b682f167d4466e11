#pragma once
// The conversion windows on the real codecs (LAME, mpg123, libsndfile). The file, folder
// and format dialogs answer from a script; the windows' own timers run in virtual time.

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QUrl>
#include <memory>

#include "app/AppState.h"
#include "app/Forms.h"
#include "convert/FileListForm.h"
#include "platform/Components.h"
#include "platform/mp3decoder/Mpg123Mp3Decoder.h"
#include "platform/mp3encoder/LameMp3Encoder.h"
#include "platform/wavechain/SndfileWaveChain.h"
#include "support/AppTest.h"
#include "support/AudioFixtures.h"
#include "support/FakeFileDialogs.h"
#include "support/FakeFormatChooser.h"

namespace cantovel::test {

class FileConversionFixture : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        // An earlier test's closing of every window leaves the flag set.
        AppClosing = VFalse;
        dialogs = std::make_shared<FakeFileDialogs>();
        Components::provideService<FileDialogs>(dialogs);
        Components::provideFactory<Mp3Encoder>([] { return std::make_unique<LameMp3Encoder>(); });
        Components::provideFactory<Mp3Decoder>([] { return std::make_unique<Mpg123Mp3Decoder>(); });
        Components::provideFactory<WaveChain>([] { return std::make_unique<SndfileWaveChain>(); });
        FakeFormatChooser::install();
        QDir().mkpath(out());
    }
    void TearDown() override {
        UnloadAllForms();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        AppTest::TearDown();
    }

    // A CD-quality tone of `seconds` at `name` below the test's folder.
    QString wav(const QString& name, double seconds = 0.5) {
        const QString path = tempDir() + u'/' + name;
        QDir().mkpath(QFileInfo(path).absolutePath());
        EXPECT_TRUE(writeTone(path, seconds));
        return path;
    }
    // The output folder the folder dialogs answer.
    QString out() const { return tempDir() + QStringLiteral("/out"); }
    static QStringList rows(const QListWidget* list) {
        QStringList all;
        for (int i = 0; i < list->count(); ++i) all << list->item(i)->text();
        return all;
    }
    // Drops `paths` on the window's list the way the window system hands them over: enter,
    // then drop, on the list's viewport.
    static void drop(FileListForm& w, const QStringList& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& p : paths) urls << QUrl::fromLocalFile(p);
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(w.List1->viewport(), &enter);
        if (!enter.isAccepted()) return;
        QDropEvent dropped(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(w.List1->viewport(), &dropped);
    }
    // Lets queued events arrive.
    static void settle() {
        for (int i = 0; i < 5; ++i) QCoreApplication::processEvents();
    }
    // Runs the window's list into `folder` and waits for the run's end: the list empty, the
    // stopped text, or a box told.
    bool run(FileListForm& w, const QString& folder) {
        QDir().mkpath(folder);
        dialogs->scriptFolder(folder);
        w.RunMenu->trigger();
        const bool ended = waitUntil([&] {
            return w.List1->count() == 0 || w.Label1->text().contains("stop") ||
                   !msgBox().shown.isEmpty();
        });
        settle();
        return ended;
    }

    std::shared_ptr<FakeFileDialogs> dialogs;
};

}  // namespace cantovel::test
