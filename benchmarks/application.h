#pragma once

#include <QApplication>

/// As every benchmark that shows something has it: no display, 96 dots per inch.
struct Application
{
    Application()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_FONT_DPI", "96");
        qputenv("QT_LOGGING_RULES", "default.warning=false"); // of the platform's limits
        static int argc = 1;
        static char name[] = "bench";
        static char *argv[] = {name, nullptr};
        app = new QApplication(argc, argv);
    }
    ~Application() { delete app; }

    QApplication *app;
};
