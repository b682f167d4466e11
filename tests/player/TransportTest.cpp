// Transport commands as the user gives them: the skin's buttons, the Ctrl keys, the thumb
// drag, a volume step and the balance; and the File menu's delete and clearing of the
// recent files.
#include <QTest>

#include "PlayerTest.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class TransportTest : public PlayerTest {
  protected:
    // The skin sizes the controls the mouse finds.
    void SetUp() override {
        PlayerTest::SetUp();
        main->LoadSkin(QString());
    }
    // A click on a skin button: 1 play, 2 pause, 3 stop, 5 open.
    void button(int index) { click(*main, main->imgButton[index].rect.center()); }
    // Ctrl+U pauses and resumes, Ctrl+P plays the file in hand, Ctrl+S stops; they run
    // their commands even where the menu has them off.
    void ctrl(Qt::Key key) { QTest::keyClick(main, key, Qt::ControlModifier); }
};

TEST_F(TransportTest, ButtonsKeysAndTheThumbWorkOnWhateverIsLoaded) {
    dialogs->scriptCancel();
    button(1);
    EXPECT_EQ(dialogs->calls.size(), 1);  // nothing loaded: the open dialog
    ctrl(Qt::Key_U);
    ctrl(Qt::Key_P);
    EXPECT_EQ(msgBox().texts(),
              (QStringList{"No file is currently playing to pause.",
                           "No file is currently loaded to play.\r\nSelect \"\"Play New File\"\" "
                           "to open\r\nthe desired media."}));

    openByDialog(media(QStringLiteral("Song.mp3"), 3));
    clock().advance(1000);
    button(2);
    EXPECT_EQ(temp->mnuPause->text(), QStringLiteral("&Resume"));
    const double at = MP().CurrentPosition();
    clock().advance(3000);
    EXPECT_EQ(MP().CurrentPosition(), at);
    button(2);
    EXPECT_EQ(temp->mnuPause->text(), QStringLiteral("Pa&use"));
    clock().advance(3000);  // played out
    MP().calls.clear();
    button(1);
    EXPECT_EQ(MP().calls, QStringList{"Play"});  // replayed as it is, no new open
    EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Stop"));
    button(3);
    EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Open..."));

    // Open File while playing stops first, then asks for a file.
    const QString next = media(QStringLiteral("Next.wav"));
    button(1);
    dialogs->scriptFiles({next});
    button(5);
    EXPECT_EQ(MP().fileName(), next);

    // Dragging the thumb seeks; its travel ends short of the face's width.
    const QPoint thumb = main->imgPlayProgress.rect.center();
    hover(*main, thumb);
    press(*main, thumb);
    drag(*main, thumb + QPoint(124, 0));
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 140);
    EXPECT_EQ(MP().calls.last(), QStringLiteral("CurrentPosition=5"));
    drag(*main, thumb + QPoint(500, 0));
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 248);
    drag(*main, thumb - QPoint(500, 0));
    EXPECT_EQ(main->imgPlayProgress.rect.left(), 16);
    release(*main, thumb - QPoint(500, 0));

    // With more than one row Play runs the list; the thumb and pause go to the queue's player.
    button(3);
    main->List1 << media(QStringLiteral("Other.avi"));
    button(1);
    ASSERT_NE(AM(), nullptr);
    EXPECT_EQ(AM()->fileName(), next);
    press(*main, thumb);
    drag(*main, thumb + QPoint(124, 0));
    release(*main, thumb + QPoint(124, 0));
    EXPECT_EQ(AM()->calls.last(), QStringLiteral("CurrentPosition=5"));
    ctrl(Qt::Key_U);
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPaused);
    ctrl(Qt::Key_U);
    EXPECT_EQ(AM()->PlayState(), MediaPlayer::mpPlaying);
    temp->mnuStop->trigger();

    // A film from the command line pauses in the video window; a stop closes that window,
    // and the Vivo window alike.
    main->OpenCommandLine(media(QStringLiteral("Clip.avi")));
    auto* videoMP = static_cast<FakeMediaPlayer*>(video()->MP());
    ctrl(Qt::Key_U);
    EXPECT_EQ(videoMP->PlayState(), MediaPlayer::mpPaused);
    ctrl(Qt::Key_U);
    EXPECT_EQ(videoMP->PlayState(), MediaPlayer::mpPlaying);
    // A volume step reaches every player there is; the balance the hidden one's alone.
    click(*main, QPoint(171, 55));
    EXPECT_EQ(videoMP->Volume(), MP().Volume());
    EXPECT_LT(MP().Volume(), 0);
    const QPoint knob = main->imgBalance.rect.center();
    hover(*main, knob);
    press(*main, knob);
    drag(*main, knob - QPoint(18, 0));
    release(*main, knob - QPoint(18, 0));
    EXPECT_EQ(MP().Balance(), -581);
    EXPECT_EQ(videoMP->Balance(), 0);
    ctrl(Qt::Key_S);
    EXPECT_EQ(video(), nullptr);
    main->OpenCommandLine(media(QStringLiteral("Film.viv")));
    ctrl(Qt::Key_U);
    EXPECT_EQ(temp->mnuPause->text(), QStringLiteral("&Resume"));
    ctrl(Qt::Key_U);
    ctrl(Qt::Key_S);
    EXPECT_EQ(vivo(), nullptr);

    // A CD track resumes from where it stopped.
    FakeCDReader::setTracks({200, 180});
    openByDialog(file(QStringLiteral("Track02.cda")));
    clock().advance(10000);
    ctrl(Qt::Key_U);
    FakeCDReader& reader = *FakeCDReader::instances().last();
    EXPECT_EQ(reader.calls.last(), QStringLiteral("PauseAudio"));
    const qint64 pausedAt = CDReader::ToFrames(reader.Position());
    clock().advance(5000);
    ctrl(Qt::Key_U);
    EXPECT_EQ(reader.calls.last(),
              QStringLiteral("PlayAudioRange=%1+%2").arg(pausedAt).arg(180 * 75));
}

TEST_F(TransportTest, DeleteAndClearingTheRecentFilesDoWhatTheySayOrSayWhyNot) {
    temp->mnuDelete->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList{"No file is currently loaded to delete."});
    for (const int answer : {Mb::No, Mb::Yes}) {
        const QString song = media(answer == Mb::No ? "No.mp3" : "Yes.mp3");
        openByDialog(song);
        msgBox().reset();
        msgBox().script({answer});
        temp->mnuDelete->trigger();
        EXPECT_EQ(msgBox().texts(), QStringList{"Are you sure you want to delete:  " + song + "?"});
        EXPECT_EQ(shell->trashed.last(), song);
        EXPECT_TRUE(main->TitleText().isEmpty());
    }

    // A Trash that refuses leaves the file where it was, and loaded.
    const QString kept = media("Keep.wav");
    openByDialog(kept);
    shell->trashResult = false;
    msgBox().reset();
    msgBox().script({Mb::Yes});
    temp->mnuDelete->trigger();
    ASSERT_EQ(msgBox().texts().size(), 2);
    EXPECT_EQ(msgBox().texts()[1],
              "The file '" + kept + "' could not be moved to the Trash, so it was not deleted.");
    EXPECT_EQ(main->lblTitle[0].Caption, "Keep.wav");
    EXPECT_TRUE(QFile::exists(kept));

    msgBox().reset();
    FakeCDReader::setTracks({200});
    openByDialog(file(QStringLiteral("Track01.cda")));
    temp->mnuDelete->trigger();
    EXPECT_EQ(msgBox().texts(),
              QStringList{"CD-ROM media is read-only, and cannot be deleted from."});
    EXPECT_EQ(shell->trashed.size(), 3);  // the CD track was not among them

    // Clearing the recent files empties the list and says so, or says it could not.
    msgBox().reset();
    mru->added.clear();
    temp->mnuClearCantovelMRU->trigger();
    EXPECT_EQ(mru->added, (QList<std::pair<QString, QString>>(4)));
    EXPECT_EQ(msgBox().texts(),
              QStringList{"Cantovel's Most Recently Used (MRU) files list has been successfully "
                          "cleared."});
    temp->MRU.reset();  // no list to clear is the error path
    mru = nullptr;
    temp->mnuClearCantovelMRU->trigger();
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_TRUE(msgBox().shown[1].text.startsWith("An error occurred while attempting to clear"));
}

}  // namespace
