// The playlist file: its one format and the line reader's rules.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "playlist/PlaylistFile.h"

using namespace cantovel;

namespace {

class PlaylistFileTest : public ::testing::Test {
  protected:
    QString write(const QString& name, const QByteArray& content) {
        const QString path = dir.path() + u'/' + name;
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(content);
        return path;
    }
    QByteArray read(const QString& path) {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<unreadable>");
    }
    QTemporaryDir dir;
};

TEST_F(PlaylistFileTest, CommentsAreSkippedAndMissingLinesBecomeThePlaylistItself) {
    EXPECT_TRUE(PlaylistFile::ReadPlaylist(write("only.m3u", "#EXTM3U\r\n\r\n#EXTINF:1,S\r\n#\n\n"))
                    .isEmpty());
    EXPECT_TRUE(PlaylistFile::ReadPlaylist(dir.path() + "/absent.m3u").isEmpty());
    // Whatever the line ends; a colon alone is skipped.
    const QString a = write("a.mp3", "x"), b = write("b b.wav", "x");
    const QString list = write("list.ply", ("/nowhere/one.mp3\r\n" + a + "\r\n#EXTINF:1,b\n" + b +
                                            "\rrelative.wav\r\n:\r\n:x\r\n")
                                               .toLocal8Bit());
    EXPECT_EQ(PlaylistFile::ReadPlaylist(list), (QStringList{list, a, b, list, list}));
}

TEST_F(PlaylistFileTest, EveryLineEndsInCrLfAndBothExtensionsWriteTheSameBytes) {
    const QStringList rows{"/music/a.mp3", "/music/b c.wav", "/music/Track01.cda"};
    const QString ply = dir.path() + "/x.ply", m3u = dir.path() + "/x.m3u";
    ASSERT_TRUE(PlaylistFile::WritePlaylist(ply, rows));
    ASSERT_TRUE(PlaylistFile::WritePlaylist(m3u, rows));
    EXPECT_EQ(read(ply), QByteArray("/music/a.mp3\r\n/music/b c.wav\r\n/music/Track01.cda\r\n"));
    EXPECT_EQ(read(ply), read(m3u));

    // An empty list is a file of no bytes, and replaces what was there.
    ASSERT_TRUE(PlaylistFile::WritePlaylist(ply, {}));
    EXPECT_TRUE(QFileInfo::exists(ply));
    EXPECT_EQ(read(ply), QByteArray());

    EXPECT_FALSE(PlaylistFile::WritePlaylist(dir.path() + "/no/such/folder/x.ply", rows));
}

}  // namespace
