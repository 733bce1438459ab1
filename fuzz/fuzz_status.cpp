#include "fuzzing.h"
#include "panelplayer.h"
#include "virtualtime.h"

#include <QTranslator>

#include <dlfcn.h>

// A panel's catalog stays for the life of the process, which here sees any number of panels.
static QTranslator *catalog = nullptr;

bool QCoreApplication::installTranslator(QTranslator *translator)
{
    static const auto original = reinterpret_cast<bool (*)(QTranslator *)>(
        dlsym(RTLD_NEXT, "_ZN16QCoreApplication17installTranslatorEP11QTranslator"));
    catalog = translator;
    return original(translator);
}

/// A panel's life among users, hosts and cameras, against the model of it.
extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, size_t size)
{
    needApplication(Warnings::AreFindings);
    VirtualTime::start();
    Input input(bytes, size);
    const auto pick = [&input](int bound) {
        return input.take() % bound;
    };
    // A step takes two to six bytes.
    const QStringList steps = chosenSteps(pick, int(size) / 3);
    const QString fault = PanelPlayer().play(steps);
    QCoreApplication::removeTranslator(catalog);
    if (!fault.isEmpty())
        std::fprintf(stderr, "M24_SEQUENCE=\"%s\"\n%s\n", qPrintable(steps.join(',')),
                     qPrintable(fault));
    REQUIRE(fault.isEmpty());
    return 0;
}
