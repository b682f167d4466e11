// A later start of the program hands its path, or only a restore, to the running one: the
// desktop entry's hand-off mode and the link between the two processes.
#include <gtest/gtest.h>

#include <QFile>

#include "app/Settings.h"
#include "app/SubMain.h"
#include "platform/Components.h"
#include "platform/instance/LocalInstanceLink.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "support/AppTest.h"
#include "support/AudioFixtures.h"
#include "support/FakeMediaPlayer.h"
#include "support/FakeMixer.h"
#include "support/FakeShell.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class HandOffTest : public AppTest {
  protected:
    void TearDown() override {
        unloadTheProgram();
        AppTest::TearDown();
    }
    QString song(const QString& name) {
        const QString path = tempDir() + u'/' + name;
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("data");
        FakeMediaPlayer::setLength(path, 30);
        return path;
    }
    FakeMediaPlayer& MP() { return *static_cast<FakeMediaPlayer*>(frmTemp::get().MP.get()); }
};

}  // namespace

// Two starts over the real link, in one process: the second hands over and ends.
TEST_F(HandOffTest, ThroughTheRealLinkAHandOffStartsTheFirstAndLaterOnesPlayInItOrRestoreIt) {
    Components::provideService<Mixer>(std::make_shared<FakeMixer>());
    Components::provideService<Shell>(std::make_shared<FakeShell>());
    FakeMediaPlayer::install();
    // A link folder of its own: other programs' tests on this machine use the shared one.
    const QString folder = tempDir() + "/link";
    Components::provideFactory<InstanceLink>(
        [folder] { return std::make_unique<LocalInstanceLink>(folder); });
    const QString first = song("First Song.wav");
    ASSERT_EQ(SubMain({"cantovel", "--hand-off", first}), -1);
    frmMain* main = frmMain::instance();
    ASSERT_NE(main, nullptr);
    EXPECT_NE(RunningInstanceLink(), nullptr);
    EXPECT_EQ(main->CurrentFile, first);
    ASSERT_EQ(MP().fileName(), first);

    // A plain second start only brings the first to the front.
    main->showMinimized();
    EXPECT_EQ(SubMain({"cantovel", song("Ignored.wav")}), 0);
    EXPECT_TRUE(waitUntil([&] { return !main->isMinimized(); }));
    EXPECT_EQ(main->List1, QStringList{first});
    EXPECT_EQ(MP().fileName(), first);

    // A file the player refuses: the window comes to the front with the message, the file of
    // the moment stays current and the lists, replaced, are emptied by the refusal.
    main->showMinimized();
    EXPECT_EQ(SubMain({"cantovel", "--hand-off", tempDir() + "/Gone.mp3"}), 0);
    EXPECT_TRUE(waitUntil([&] { return !msgBox().shown.isEmpty(); }));
    EXPECT_FALSE(main->isMinimized());
    EXPECT_EQ(msgBox().texts(),
              QStringList{"An error occurred attempting to load \"Gone.mp3\".  The file is most "
                          "likely corrupt, invalid, or an unsupported format."});
    EXPECT_EQ(main->CurrentFile, first);
    EXPECT_TRUE(main->List1.isEmpty());

    // The desktop's hand-off splits a path with a blank; the file type's own command, as
    // the association wrote it, carries it over.
    WriteRegValue(RegRoot::ClassesRoot, ".wav", {}, "Cantovel");
    WriteRegValue(RegRoot::ClassesRoot, "Cantovel\\Shell\\Open\\ddeexec", {}, "%1");
    const QString second = song("Second Song.WAV");
    EXPECT_EQ(SubMain({"cantovel", "--hand-off", tempDir() + "/Second", "Song.WAV"}), 0);
    EXPECT_TRUE(waitUntil([&] { return MP().fileName() == second; }));
    EXPECT_EQ(main->CurrentFile, second);
    EXPECT_EQ(main->List1, QStringList{second});
    EXPECT_EQ(MP().PlayState(), MediaPlayer::mpPlaying);
}
