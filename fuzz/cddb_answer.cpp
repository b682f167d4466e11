// A CDDB server's answers to a query, a site list and a category list: whatever a server
// sends, the tables stay within their rows and every row reads back. The first byte says
// which question the rest answers.
#include <QCoreApplication>

#include "FuzzInput.h"
#include "cd/CdBase.h"
#include "cd/CdBase_Code.h"

using namespace cantovel;

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    // Answers arrive as Latin-1 text, one byte a character.
    const QString answer =
        QString::fromLatin1(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    CdBase cddb;
    switch (data[0] % 3) {
        case 0: {
            if (answer.startsWith(QLatin1String("200"))) SplitMatchLine(answer);
            cddb.CloseMatchDecode(answer);
            fuzz::require(CloseMatchCount >= 0);
            for (int row = 1; row <= CloseMatchCount && row <= 100; ++row)
                fuzz::require(!CloseMatches[row].Category.contains(QLatin1Char(' ')));
            break;
        }
        case 1: {
            const QString code = cddb.parseSites(answer);
            fuzz::require(cddb.Sites >= 0);
            if (code.startsWith(QLatin1String("210 Ok")))
                for (int row = 1; row <= std::min<int>(cddb.Sites, 101) + 1; ++row) {
                    const QString address = cddb.SiteAddress(row);
                    fuzz::require(!address.contains(QLatin1Char(' ')));
                    fuzz::require(row <= cddb.Sites ||
                                  (address.isEmpty() && cddb.SitePort(row) == 0));
                    cddb.SiteLocation(row);
                }
            break;
        }
        default: {
            const QString code = cddb.parseLscat(answer);
            fuzz::require(code.startsWith(QLatin1String("210")) || code == QLatin1String("401"));
            fuzz::require(cddb.Categories >= 0);
            for (int row = 1; row <= cddb.Categories && row <= 50; ++row)
                fuzz::require(!cddb.GetCategory(row).contains(QLatin1String("\r\n")));
            fuzz::require(cddb.GetCategory(cddb.Categories + 1).isEmpty());
            break;
        }
    }
    return 0;
}
