// File names as bytes: the mapping between name bytes and the program's strings, and the
// file operations that go by a name's own bytes.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include "app/FileNames.h"

using namespace cantovel;

namespace {

QByteArray readRaw(const QByteArray& path) {
    QFile f;
    const int fd = ::open(path.constData(), O_RDONLY);
    if (fd < 0 || !f.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) return {};
    return f.readAll();
}

TEST(FileNamesTest, AnyBytesComeBackExactlyAndUtf8ReadsAsText) {
    const QByteArray samples[] = {
        "caf\xE9.mp3",
        "\xED\xB2\x80",              // a surrogate
        "\xC0\xAF",                  // overlong
        "\xF0\x9F\x8E\xB5 caf\xE9",  // a pair of surrogates beside an escaped byte
        "\xE2\x82",
        "\xEF\xBF\xBD real replacement",
        "\xF4\x90\x80\x80"};
    for (const QByteArray& bytes : samples)
        EXPECT_EQ(NameToBytes(NameFromBytes(bytes)), bytes) << bytes.toHex().constData();

    auto* random = QRandomGenerator::global();
    for (int i = 0; i < 2000; ++i) {
        QByteArray bytes(int(random->bounded(1, 12)), Qt::Uninitialized);
        for (char& c : bytes) c = char(random->bounded(1, 256));
        ASSERT_EQ(NameToBytes(NameFromBytes(bytes)), bytes) << bytes.toHex().constData();
    }

    EXPECT_EQ(NameFromBytes("caf\xC3\xA9"), QStringLiteral("café"));
    // Two names that differ in their bytes stay apart, though Qt would read both as U+FFFD.
    EXPECT_NE(NameFromBytes("a\xE9"), NameFromBytes("a\xE8"));
}

TEST(FileNamesTest, FilesAreFoundOpenedListedAndReplacedByTheirOwnBytes) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QByteArray folder = QFile::encodeName(dir.path());
    const QByteArray raw = folder + "/caf\xE9.mp3";
    const QString name = NameFromBytes(raw);

    QFile out;
    ASSERT_TRUE(OpenByName(out, name, QIODevice::WriteOnly));
    out.write("sound");
    out.close();
    EXPECT_EQ(readRaw(raw), QByteArray("sound"));
    EXPECT_EQ(KindOfName(name), NameKind::File);
    EXPECT_EQ(KindOfName(NameFromBytes(folder)), NameKind::Folder);
    EXPECT_EQ(KindOfName(NameFromBytes(folder + "/caf\xE8.mp3")), NameKind::Missing);
    ASSERT_EQ(::mkdir((folder + "/sub").constData(), 0700), 0);
    EXPECT_EQ(FilesInFolder(NameFromBytes(folder)), QStringList{NameFromBytes("caf\xE9.mp3")});

    QFile in;
    ASSERT_TRUE(OpenByName(in, name, QIODevice::ReadOnly));

    // A replacement through a symbolic link goes to the link's target and keeps its mode.
    const QByteArray link = folder + "/link\xE9";
    ASSERT_EQ(::symlink("caf\xE9.mp3", link.constData()), 0);
    ASSERT_EQ(::chmod(raw.constData(), 0640), 0);
    ASSERT_TRUE(ReplaceFileByName(NameFromBytes(link), "new sound"));
    struct stat st {};
    ASSERT_EQ(::lstat(link.constData(), &st), 0);
    EXPECT_EQ(readRaw(raw), QByteArray("new sound"));
    ASSERT_EQ(::stat(raw.constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
    EXPECT_EQ(FilesInFolder(NameFromBytes(folder)).size(), 2);  // no temporary file left

    // A failed write leaves nothing behind and says so.
    EXPECT_FALSE(ReplaceFileByName(NameFromBytes(folder + "/missing/x"), "x"));
    // Qt can't name these to remove them with their folder.
    ::unlink(link.constData());
    ::unlink(raw.constData());
}

}  // namespace
