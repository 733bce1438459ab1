// What a host waits for when it loads the library and asks for the panel.

#include "application.h"
#include "benchmark.h"
#include "orvpluginapi.h"

#include <QPluginLoader>

namespace {

double load(const char *file)
{
    return Bench::bestOf(1, [file] {
        QPluginLoader loader(QString::fromLocal8Bit(file));
        if (!qobject_cast<OrvPluginApi *>(loader.instance()))
            qFatal("cannot load %s", file);
    });
}

} // namespace

int main()
{
    const Application application;
    Bench::timeInCopies(
        "load and instance", "1.2", [] { return load(M24_MODULE); },
        [] { return load(EMPTY_MODULE); });
    return Bench::run();
}
