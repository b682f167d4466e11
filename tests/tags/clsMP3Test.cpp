// ID3v1 reading and the MP3 information box, on files the tests write.
#include <gtest/gtest.h>

#include <QFile>

#include "support/AppTest.h"
#include "tags/MP3Information.h"
#include "tags/clsMP3.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// A field of a tag, padded to its size with `pad`.
QByteArray field(const QByteArray& text, int size, char pad = '\0') {
    return text.left(size).leftJustified(size, pad);
}

QByteArray tag(const QByteArray& title, const QByteArray& artist, const QByteArray& album,
               const QByteArray& year, const QByteArray& comment, int genre, char pad = ' ',
               const QByteArray& marker = "TAG") {
    QByteArray t = marker + field(title, 30, pad) + field(artist, 30, pad) + field(album, 30, pad) +
                   field(year, 4, pad) + field(comment, 30, pad);
    t.append(char(genre));
    return t;
}

class ID3Test : public AppTest {
  protected:
    // An "MP3" of some audio-ish bytes followed by `tail`.
    QString write(const QString& name, const QByteArray& tail, int body = 4000) {
        const QString path = tempDir() + "/" + name;
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(body, char(0xFF)));
        f.write(tail);
        return path;
    }
    clsMP3 mp3;
};

TEST_F(ID3Test, ReadsTheFieldsTrimmingTrailingBlanksOnly) {
    const QString path =
        write("song.mp3", tag("  Title", "Artist", "Album", "1999", "A comment", 17));
    mp3.setFileName(path);
    EXPECT_EQ(mp3.FileName(), path);
    EXPECT_EQ(mp3.Title(), "  Title");
    EXPECT_EQ(mp3.Artist(), "Artist");
    EXPECT_EQ(mp3.Album(), "Album");
    EXPECT_EQ(mp3.Year(), "1999");
    EXPECT_EQ(mp3.Comment(), "A comment");
    EXPECT_EQ(mp3.Genre(), "Rock");
}

TEST_F(ID3Test, NoTagLeavesBlanksAndFourBlankYear) {
    // A tagged file first, so the blanking of the next read shows.
    mp3.setFileName(write("tagged.mp3", tag("T", "A", "B", "2001", "C", 0)));
    ASSERT_EQ(mp3.Genre(), "Blues");
    for (const QString& path :
         {write("plain.mp3", QByteArray(128, 'x')), write("short.mp3", "TAG", 0),
          tempDir() + "/missing.mp3",
          // The marker is case-sensitive.
          write("lower.mp3", tag("T", "A", "B", "2001", "C", 1, ' ', "tag"))}) {
        SCOPED_TRACE(path.toStdString());
        mp3.setFileName(path);
        EXPECT_EQ(mp3.FileName(), path);
        EXPECT_EQ(mp3.Title(), "");
        EXPECT_EQ(mp3.Artist(), "");
        EXPECT_EQ(mp3.Album(), "");
        EXPECT_EQ(mp3.Comment(), "");
        EXPECT_EQ(mp3.Genre(), "");
        EXPECT_EQ(mp3.Year(), "    ");
    }
}

TEST_F(ID3Test, NulPaddingIsKeptAndFullFieldsAreWhole) {
    const QByteArray full = "123456789012345678901234567890";
    mp3.setFileName(write("nul.mp3", tag("Short", full, "Al", "99", "", 13, '\0')));
    EXPECT_EQ(mp3.Title(), QString("Short") + QString(25, QChar(0)));
    EXPECT_EQ(mp3.Artist(), QString::fromLatin1(full));
    EXPECT_EQ(mp3.Year(), QString("99") + QString(2, QChar(0)));
    EXPECT_EQ(mp3.Comment(), QString(30, QChar(0)));
    EXPECT_EQ(mp3.Genre(), "Pop");
    // A tag exactly the size of the file is still read.
    mp3.setFileName(write("bare.mp3", tag("Only a tag", "", "", "", "", 0), 0));
    EXPECT_EQ(mp3.Title(), "Only a tag");
}

TEST_F(ID3Test, GenreBytesAboveTheListLeaveGenreBlank) {
    mp3.setFileName(write("g147.mp3", tag("T", "", "", "2000", "", 147)));
    EXPECT_EQ(mp3.Genre(), "Synth Pop");
    for (int genre : {148, 255}) {
        mp3.setFileName(write("g.mp3", tag("Kept", "", "", "2000", "", genre)));
        EXPECT_EQ(mp3.Genre(), "");
        EXPECT_EQ(mp3.Title(), "Kept");
        EXPECT_EQ(mp3.Year(), "2000");
    }
    const QStringList genres = clsMP3::GenreList();
    ASSERT_EQ(genres.size(), 148);
    EXPECT_EQ(genres[67], "Phychedelic");
    EXPECT_EQ(genres[85], "Bebob");
    EXPECT_EQ(genres[90], "Avantegarde");
    EXPECT_EQ(genres[117], "power Ballad");
    EXPECT_EQ(genres[131], "indie");
    EXPECT_EQ(genres[140], "Comteporary Christian");
    EXPECT_EQ(genres[144], "Trash Metal");
    int longest = 0;
    for (const QString& g : genres) longest = std::max<int>(longest, int(g.size()));
    EXPECT_EQ(longest, 21);
}

TEST_F(ID3Test, BytesAreTheWindowsCodePage) {
    mp3.setFileName(write("cp.mp3", tag("Caf\xe9 \x80 \x93x\x94", "", "", "", "", 0)));
    EXPECT_EQ(mp3.Title(), QString::fromUtf8("Café € “x”"));
}

TEST_F(ID3Test, InformationBoxShowsTheFreshTag) {
    const QString path = write("Some Song.MP3", tag("Title", "Artist", "", "1987", "Comment", 147));
    ShowMP3Information(mp3, path);
    ASSERT_EQ(msgBox().shown.size(), 1);
    const ShownBox& box = msgBox().shown[0];
    EXPECT_EQ(box.text,
              "Filename:  Some Song.MP3\r\nTrack Title:  Title\r\nArtist:  Artist\r\n"
              "Album:  \r\nYear:  1987\r\nComment:  Comment\r\nGenre: Synth Pop");
    EXPECT_EQ(box.icon(), Mb::Information);
    EXPECT_TRUE(box.foreground());
    EXPECT_EQ(box.title, "Cantovel");
    EXPECT_EQ(mp3.FileName(), path);

    // An untagged file still gets its box with all seven labels.
    ShowMP3Information(mp3, write("plain.mp3", QByteArray(200, 'x')));
    EXPECT_EQ(msgBox().shown.last().text,
              "Filename:  plain.mp3\r\nTrack Title:  \r\nArtist:  \r\nAlbum:  \r\n"
              "Year:      \r\nComment:  \r\nGenre: ");
}

TEST_F(ID3Test, InformationRefusesNoFileAndOtherExtensions) {
    const QString notLoaded =
        "A MP3 file is not currently loaded to process.  In order to retrieve information on "
        "a given MP3 file, you must first load the file into the main Cantovel module.";
    ShowMP3Information(mp3, QString());
    ShowMP3Information(mp3, write("song.mp2", tag("T", "", "", "", "", 0)));
    ASSERT_EQ(msgBox().shown.size(), 2);
    for (const ShownBox& box : msgBox().shown) {
        EXPECT_EQ(box.text, notLoaded);
        EXPECT_EQ(box.icon(), Mb::Information);
        EXPECT_TRUE(box.foreground());
    }
    EXPECT_EQ(mp3.FileName(), QString());
}

}  // namespace
