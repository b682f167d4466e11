#pragma once
// Which player takes a file is decided by its lower-cased extension (with its dot)
// alone; the content is never probed.

#include <QString>
#include <initializer_list>

#include "app/Utilities.h"

namespace cantovel {

namespace MediaClasses {

// The lower-cased extension of a path, with its dot. Parses the path, as every path
// test here does.
inline QString extensionOf(const QString& path) {
    return ParsePathParts(path, QStringLiteral("e")).toLower();
}

inline bool isOneOf(const QString& ext, std::initializer_list<const char*> list) {
    for (const char* e : list)
        if (ext == QLatin1String(e)) return true;
    return false;
}

// Films in the containers of later years, which the classic list predates: wherever a
// film is taken, these are films too (else they would play as sound with no picture).
inline bool isModernFilm(const QString& ext) {
    return isOneOf(ext, {".mp4", ".m4v", ".mkv", ".webm", ".wmv", ".ogv", ".flv"});
}
// Their patterns for the open dialogs (".wmv" is offered there already).
inline constexpr const char* kModernFilmPatterns = "*.mp4;*.m4v;*.mkv;*.webm;*.ogv;*.flv";

// Played in the video window. ".mpa" (audio) and ".dat" belong here on purpose.
inline bool isVideo(const QString& ext) {
    return isOneOf(ext, {".avi", ".mov", ".mpg", ".mpeg", ".mpe", ".dat", ".m1v", ".enc", ".qt",
                         ".mpv", ".mpa"}) ||
           isModernFilm(ext);
}
inline bool isVivo(const QString& ext) {
    return isOneOf(ext, {".viv", ".vivo"});
}
inline bool isAudioCD(const QString& ext) {
    return ext == QLatin1String(".cda");
}
inline bool isPlaylist(const QString& ext) {
    return isOneOf(ext, {".ply", ".m3u"});
}

// Sound in the formats of later years: played hidden like any other sound, and offered
// by the open dialogs, the drops of folders and the desktop.
inline bool isModernAudio(const QString& ext) {
    return isOneOf(ext, {".flac", ".ogg", ".oga", ".opus", ".m4a", ".aac"});
}
inline constexpr const char* kModernAudioPatterns = "*.flac;*.ogg;*.oga;*.opus;*.m4a;*.aac";

// A running queue splits differently: these play hidden in the queue's player...
inline bool isQueueAudio(const QString& ext) {
    return isOneOf(ext, {".mp3", ".mp2", ".wav", ".asf", ".asx", ".wax", ".m3u", ".aif", ".au",
                         ".aiff", ".aifc", ".mid", ".midi", ".rmi", ".snd"}) ||
           isModernAudio(ext);
}
// ...and these show its window. No ".mov" and no ".mpe": a queue passes over them.
inline bool isQueueVideo(const QString& ext) {
    return isOneOf(ext, {".avi", ".mpg", ".mpeg", ".dat", ".m1v", ".enc", ".qt", ".mpv", ".mpa"}) ||
           isModernFilm(ext);
}

}  // namespace MediaClasses

}  // namespace cantovel
