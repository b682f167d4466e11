#pragma once
// Lets GoogleTest print Qt texts readably in failure messages. Include it in a test file
// before the assertions that compare them (AppTest.h does).

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <ostream>

QT_BEGIN_NAMESPACE

inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

inline void PrintTo(const QByteArray& b, std::ostream* os) {
    *os << '"' << b.toPercentEncoding(" !#$&'()*+,/:;=?@[]{}<>|^~`\"\\").toStdString() << '"';
}

inline void PrintTo(const QStringList& l, std::ostream* os) {
    *os << '{';
    for (qsizetype i = 0; i < l.size(); ++i) {
        if (i) *os << ", ";
        PrintTo(l[i], os);
    }
    *os << '}';
}

QT_END_NAMESPACE
