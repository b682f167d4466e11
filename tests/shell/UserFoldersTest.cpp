// The conversion windows offer the user's own folders for their output: the music
// folder, else the home folder; never the folder the program is installed in.
#include <gtest/gtest.h>

#include <QAction>
#include <QDir>

#include "app/Forms.h"
#include "convert/FileConversionFixture.h"
#include "convert/frmBatchConvert.h"
#include "convert/frmDecode.h"
#include "convert/frmEncode.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class UserFoldersTest : public FileConversionFixture {
  protected:
    // Where each window's folder dialog starts on a first run (the dialog is cancelled).
    QStringList startFolders() {
        QStringList folders;
        auto ask = [&](FileListForm& w) {
            dialogs->calls.clear();
            w.RunMenu->trigger();
            settle();
            folders << (dialogs->calls.isEmpty() ? QStringLiteral("<no dialog>")
                                                 : dialogs->calls.last().startFolder);
            w.unload();
            settle();
        };
        frmEncode& encode = Forms::touch<frmEncode>();
        encode.addEntry(file(QStringLiteral("a.wav")));
        ask(encode);
        frmDecode& decode = Forms::touch<frmDecode>();
        decode.addEntry(file(QStringLiteral("a.mp3")));
        ask(decode);
        frmBatchConvert& batch = Forms::touch<frmBatchConvert>();
        batch.addEntry(file(QStringLiteral("b.wav")));
        ask(batch);
        return folders;
    }
};

}  // namespace

TEST_F(UserFoldersTest, OutputGoesToTheMusicFolderElseHome) {
    const QString home = tempDir() + QStringLiteral("/home");
    QDir().mkpath(home);
    ScopedEnv env;
    env.set("HOME", home);
    EXPECT_EQ(startFolders(), QStringList(3, home));
    QDir().mkpath(home + QStringLiteral("/Music"));
    EXPECT_EQ(startFolders(), QStringList(3, home + QStringLiteral("/Music")));
}
