// A skin's "skin.ini": any bytes give values of at most 127 characters, or the default.
#include "FuzzInput.h"
#include "skin/INIFiles.h"

using namespace cantovel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    INIFiles ini;
    ini.FileName = fuzz::writeInput(QStringLiteral("skin.ini"), data, size);
    const char* const keys[][2] = {{"Skin", "FontName"},      {"Skin", "FontSize"},
                                   {"Skin", "TextColor"},     {"Skin", "Bold"},
                                   {"Playlist", "BackColor"}, {"Playlist", "ForeColor"}};
    for (const auto& k : keys) {
        const QString value = ini.ReadINI(QString::fromLatin1(k[0]), QString::fromLatin1(k[1]),
                                          QStringLiteral("default"));
        fuzz::require(value.size() < INIFiles::BufferSize);
    }
    return 0;
}
