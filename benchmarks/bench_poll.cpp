// What the poll costs each second while nothing changes.

#include "application.h"
#include "benchmark.h"
#include "hostedpanel.h"

#include <QThread>

int main()
{
    const Application application;
    HostWindow host;
    auto *const panel = host.insertPanel();
    host.window.show();
    HostWindow::turn();
    QThread::msleep(150); // the slides to what the camera has
    HostWindow::turn();

    const Bench::Step poll = [&] {
        PanelInternals::poll(*panel);
        HostWindow::turn();
    };
    const Bench::Step freezeAndThaw = [&] {
        host.freezeAndThaw();
        HostWindow::turn();
    };
    Bench::instructions("one poll, nothing changed", "1.05", poll, freezeAndThaw);
    Bench::time("one poll, nothing changed", "", poll, freezeAndThaw);
    return Bench::run();
}
