// A file whose name is not UTF-8 (Latin-1 "café", byte 0xE9) on its way through the
// program: the command line, real play in mpv, a dropped folder, a saved and reloaded
// playlist.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <QApplication>

#include "PlaylistTest.h"
#include "app/FileNames.h"
#include "app/SubMain.h"
#include "support/AudioFixtures.h"
#include "support/FakeMixer.h"
#include "support/RealMpv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class ByteNamesTest : public PlaylistTest {
  protected:
    void installPlayers() override {
        RealMpv::install(env);
        Components::provideService<Mixer>(std::make_shared<FakeMixer>());
    }
    ScopedEnv env;
};

TEST_F(ByteNamesTest, ALatin1NameOpensPlaysListsSavesAndReloads) {
    const QByteArray folder = QFile::encodeName(tempDir()) + "/songs";
    ASSERT_EQ(::mkdir(folder.constData(), 0700), 0);
    const QByteArray song = folder + "/caf\xE9.wav";
    ASSERT_TRUE(writeTone(tempDir() + QStringLiteral("/tone.wav"), 2.0));
    ASSERT_EQ(::rename(QFile::encodeName(tempDir() + QStringLiteral("/tone.wav")).constData(),
                       song.constData()),
              0);

    // The command line as the process gets it.
    const char* argv[] = {"cantovel", song.constData()};
    main->Form_Load(CommandLineOf(ArgumentsFromArgv(2, argv)));
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(NameToBytes(main->CurrentFile), song);
    EXPECT_EQ(main->TrackLength, 2);
    EXPECT_EQ(main->TitleText(), NameFromBytes("caf\xE9.wav"));
    EXPECT_EQ(temp->mnuPlay->text(), QStringLiteral("&Stop"));

    // The folder dropped on the playlist lists the file under its own name.
    dropOnEditor({NameFromBytes(folder)});
    ASSERT_EQ(main->List1.size(), 1);
    EXPECT_EQ(NameToBytes(main->List1[0]), song);
    EXPECT_EQ(names(), QStringList{NameFromBytes("caf\xE9.wav")});

    const QString playlist = NameFromBytes(folder + "/list\xE9.ply");
    dialogs->scriptFiles({playlist});
    editor->mnuSave();
    QFile saved;
    ASSERT_TRUE(OpenByName(saved, playlist, QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), song + "\r\n");

    // Reloaded, the row is the song again, not the playlist standing in for a lost line.
    editor->mnuNew();
    dialogs->scriptFiles({playlist});
    editor->mnuLoad();
    ASSERT_EQ(main->List1.size(), 1);
    EXPECT_EQ(NameToBytes(main->List1[0]), song);
    EXPECT_EQ(names(), QStringList{NameFromBytes("caf\xE9.wav")});
    EXPECT_EQ(NameToBytes(ReadAppSetting(QStringLiteral("Playlist Load Dialog Path"), {})), folder);
}

}  // namespace
