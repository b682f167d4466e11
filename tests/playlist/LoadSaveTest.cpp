// Saving, loading and running a list through the editor: the line reader's rules, the recent
// playlists, and the questions that guard an unsaved list.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include "PlaylistTest.h"
#include "app/WriteFailure.h"
#include "platform/dialogs/QtFileDialogs.h"
#include "support/AudioFixtures.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class LoadSaveTest : public PlaylistTest {
  protected:
    QString saveAs(const QString& name) {
        const QString path = tempDir() + u'/' + name;
        dialogs->scriptFiles({path});
        menus->mnuSave->trigger();
        return path;
    }
    void load(const QString& path) {
        dialogs->scriptFiles({path});
        menus->mnuLoad->trigger();
    }
    QString mruValue(const QString& name) {
        return ReadRegValue(RegRoot::LocalMachine,
                            QStringLiteral("SOFTWARE\\Cantovel\\Playlist MRU\\MRU Entries"), name,
                            "");
    }
};

TEST_F(LoadSaveTest, ASavedListReloadsRunsAndAsksBeforeClosing) {
    const QStringList s = songs(3);
    rows(s);
    const QString m3u = saveAs("mine.m3u");
    ASSERT_EQ(dialogs->calls.size(), 1);
    EXPECT_EQ(dialogs->calls[0].request.title, QStringLiteral("Save Current Playlist..."));
    EXPECT_EQ(dialogs->calls[0].request.filter,
              QStringLiteral("Cantovel Playlist|*.ply|Winamp Playlist|*.m3u"));
    EXPECT_EQ(fileBytes(m3u), (s.join("\r\n") + "\r\n").toLocal8Bit());
    // The file didn't exist when its entry was due, so it has none yet.
    EXPECT_EQ(mruValue("MRU1"), QString());

    menus->mnuNew->trigger();
    load(m3u);
    EXPECT_EQ(main->List1, s);
    EXPECT_EQ(names(), namesOf(s));
    EXPECT_EQ(ReadAppSetting("Playlist Load Dialog Path", ""), tempDir());
    EXPECT_EQ(mruValue("MRU1"), m3u);
    EXPECT_EQ(mruValue("MRUTag1"), QStringLiteral("File length: %1").arg(fileBytes(m3u).size()));
    EXPECT_EQ(menus->mnuFileMRU[1]->text(), QStringLiteral("&1. ") + m3u);

    // Play runs it from the first entry on.
    main->imgButton_Click(1);
    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), s[0]);
    EXPECT_EQ(main->TitleText(), QStringLiteral("a.mp3"));
    temp->mnuSeekNext->trigger();
    EXPECT_EQ(AM()->fileName(), s[1]);
    temp->mnuStop->trigger();

    // Closing asks, since a loaded list counts as unsaved; Cancel keeps the window open.
    msgBox().script({Mb::Cancel});
    EXPECT_FALSE(editor->close());
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text,
              QStringLiteral("Do you wish to save your current playlist configuration before "
                             "exiting?"));
    EXPECT_NE(ReadAppSetting("Playlist Window Top", ""), QString()) << "stored in any case";
    msgBox().script({Mb::No});
    EXPECT_TRUE(editor->close());
    EXPECT_EQ(frmPlaylist::instance(), nullptr);

    // One row with random play: the only pick is 1, past the queue; the file in hand stays.
    setting("Audio Randomize", QStringLiteral("True"));
    main->List1 = {s[0]};
    main->CurrentFile = QStringLiteral("/before.mp3");
    temp->mnuRunPlaylist->trigger();
    EXPECT_EQ(main->PlayIndex, 1);
    EXPECT_EQ(main->CurrentFile, QStringLiteral("/before.mp3"));
    EXPECT_FALSE(temp->mnuSeekNext->isEnabled());
}

TEST_F(LoadSaveTest, ANameTypedWithoutExtensionTakesTheChosenType) {
    Components::provideService<FileDialogs>(std::make_shared<QtFileDialogs>());
    const QStringList s = songs(2);
    rows(s);
    // In the save dialog the user picks "Winamp Playlist" and types a bare name.
    bool typed = false;
    QTimer poll;
    poll.start(20);
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible()) return;
        poll.stop();
        auto* type = dialog->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
        auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        if (!type || !name) return dialog->reject();
        QTest::keyClick(type, Qt::Key_Down);
        EXPECT_EQ(type->currentText(), QStringLiteral("Winamp Playlist (*.m3u)"));
        dialog->setDirectory(tempDir());
        QTest::keyClicks(name, QStringLiteral("mine"));
        typed = true;
        QTest::keyClick(name, Qt::Key_Return);
        if (dialog->isVisible()) dialog->reject();
    });
    QTest::keyClick(editor, Qt::Key_S, Qt::ControlModifier);
    ASSERT_TRUE(typed);
    EXPECT_EQ(fileBytes(tempDir() + "/mine.m3u"), (s.join("\r\n") + "\r\n").toLocal8Bit());
}

TEST_F(LoadSaveTest, AListTheDiskRefusesIsToldAndLoadingOverItOffersToSaveFirst) {
    rows(songs(2));
    const QString refused = saveAs("gone/list.ply");
    EXPECT_EQ(msgBox().texts(), QStringList{writeFailureText(refused, QString())});
    EXPECT_FALSE(QFile::exists(refused));
    EXPECT_FALSE(main->PlaylistSaved);

    const QString other = file("other.ply", (media("z.mp3") + "\r\n").toLocal8Bit());
    const QString kept = tempDir() + "/kept.ply";
    msgBox().script({Mb::Yes});
    dialogs->scriptFiles({kept});  // the save, then the load
    load(other);
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_EQ(msgBox().shown[1].text,
              QStringLiteral("Do you wish to save your current playlist configuration before "
                             "continuing?"));
    EXPECT_EQ(fileBytes(kept).count("\r\n"), 2);
    EXPECT_EQ(names(), (QStringList{"z.mp3"}));

    // Nothing asked when the list is saved; a cancelled dialog leaves the list alone.
    saveAs("z.ply");
    dialogs->scriptCancel();
    menus->mnuLoad->trigger();
    EXPECT_EQ(msgBox().shown.size(), 2);
    EXPECT_EQ(names(), (QStringList{"z.mp3"}));
}

TEST_F(LoadSaveTest, ALoadedListSkipsCommentsAndReloadsFromTheRecentOnesOrIsToldGone) {
    // Whatever the line ends, comments and blank lines are skipped, and so is a colon alone;
    // a line that names no file stands for the playlist itself.
    const QStringList s = songs(2);
    const QString ply = file("r.ply", ("#EXTM3U\r\n\r\n/nowhere/one.mp3\r\n" + s[0] +
                                       "\r\n#EXTINF:1,b\n" + s[1] + "\rrelative.wav\r\n:\r\n:x\r\n")
                                          .toLocal8Bit());
    const QStringList loaded{ply, s[0], s[1], ply, ply};
    load(ply);
    EXPECT_EQ(main->List1, loaded);
    menus->mnuNew->trigger();
    menus->mnuFileMRU[1]->trigger();
    EXPECT_EQ(main->List1, loaded);

    QFile::remove(ply);
    menus->mnuFileMRU[1]->trigger();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text,
              QStringLiteral("The file you're attempting to load no longer exists."));

    // With confirmation off nothing is asked at close.
    menus->mnuConfirmSave->trigger();
    EXPECT_EQ(ReadAppSetting("Confirm Save on Playlist Close", ""), QStringLiteral("False"));
    EXPECT_TRUE(editor->close());
    EXPECT_EQ(msgBox().shown.size(), 1);
}

TEST_F(LoadSaveTest, ADoubleClickPlaysOneRowWithNoRunAndARefusedFileNamesItself) {
    const QString bad = file("bad.wav");
    const QStringList s = songs(3);
    rows(s + QStringList{bad});
    auto doubleClick = [this](int row) {
        const QRect r = list().visualRect(list().model()->index(row, 0));
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, r.center());
    };
    doubleClick(1);
    EXPECT_EQ(main->CurrentFile, s[1]);
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), s[1]);
    EXPECT_EQ(main->TitleText(), QStringLiteral("b.mp3"));
    AM()->playToEnd();
    EXPECT_EQ(AM()->fileName(), s[1]) << "nothing follows a row played alone";

    doubleClick(3);
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text, QStringLiteral("An error occurred attempting to load \"") +
                                          bad +
                                          QStringLiteral("\".  The file is most likely corrupt, "
                                                         "invalid, or an unsupported format."));
}

}  // namespace
