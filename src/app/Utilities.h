#pragma once
// Small helpers shared across the windows: time texts, path splitting, file and folder
// tests, disk space.

#include <QString>

namespace cantovel {

// The three two-digit texts ConvertSeconds leaves for the digit display.
struct TimeDigits {
    QString hours, minutes, seconds;
};

// Seconds as "1:05:07" (digital) or "1 hr 5 min 7 sec" (words). `digits`, when given,
// receives the two-digit hours, minutes and seconds.
QString ConvertSeconds(double seconds, bool digital, bool shortWords, TimeDigits* digits = nullptr);
// Milliseconds as "m:ss.mmm", from an hour on "h:mm:ss.mmm".
QString TimeToString(qint64 milliseconds);

// The results ParsePathParts leaves behind; the next call overwrites them.
struct PathParts {
    QString drive, path, dir, file, base, ext, whole;
};
// The module-level results of the last call.
PathParts& LastPathParts();
// Splits a path. `part`: "d" drive, "l" dir, "f" file, "b" base, "e" ext, else the path.
QString ParsePathParts(const QString& path, const QString& part, bool isFolder = false,
                       bool keepDriveColon = true, bool keepExtDot = true);

// Whether a file (or a folder) exists; hidden entries count. Blanks only is False
// without touching the disk.
bool FileExists(const QString& path);
bool PathExists(const QString& path);

// Free bytes (or kilobytes) of the file system holding `path`; -1 on failure.
double DiskFreeSpace(const QString& path, bool inKilobytes = false);

}  // namespace cantovel
