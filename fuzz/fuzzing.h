#pragma once

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

/// A rule of the code under test; breaking it is a finding.
#define REQUIRE(rule)                                                                              \
    do {                                                                                           \
        if (!(rule)) {                                                                             \
            std::fprintf(stderr, "%s:%d: broken rule: %s\n", __FILE__, __LINE__, #rule);           \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

/// The bytes of one run, taken from the front; zeros after the last.
struct Input
{
    Input(const uchar *bytes, size_t size)
        : left(reinterpret_cast<const char *>(bytes), int(size))
    {
    }

    QByteArray take(int count)
    {
        const QByteArray taken = left.left(count);
        left.remove(0, count);
        return taken.leftJustified(count, '\0');
    }

    template <typename Number = quint8>
    Number take()
    {
        Number value;
        std::memcpy(&value, take(sizeof value).constData(), sizeof value);
        return value;
    }

    QByteArray left;
};

enum class Warnings { AreFindings, AreIgnored };

/// Makes the one application of the process, without a display and the same in every run.
inline void needApplication(Warnings warnings)
{
    if (qApp)
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_FONT_DPI", "96");
    qSetGlobalQHashSeed(0);
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    new QApplication(argc, argv);
    static bool fatal;
    fatal = warnings == Warnings::AreFindings;
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &text) {
        // The exception is what the offscreen platform says of every window.
        if (!fatal || type == QtDebugMsg || text.contains("propagateSizeHints"))
            return;
        std::fprintf(stderr, "%s\n", qPrintable(text));
        std::abort();
    });
}
