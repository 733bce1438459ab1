// What the poll costs each second while nothing changes.

#include "application.h"
#include "benchmark.h"
#include "benchwindow.h"

#include <QThread>

int main()
{
    const Application application;
    BenchWindow host;
    auto *const panel = host.insertPanel();
    host.window.show();
    BenchWindow::turn();
    QThread::msleep(150); // the slides to what the camera has
    BenchWindow::turn();

    const Bench::Step poll = [&] {
        PanelInternals::poll(*panel);
        BenchWindow::turn();
    };
    const Bench::Step freezeAndThaw = [&] {
        host.freezeAndThaw();
        BenchWindow::turn();
    };
    Bench::instructions("one poll, nothing changed", "1.05", poll, freezeAndThaw);
    Bench::time("one poll, nothing changed", "", poll, freezeAndThaw);
    return Bench::run();
}
