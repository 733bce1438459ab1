// From an empty container to the panel on the screen: how long it takes, how much memory stays.

#include "application.h"
#include "benchmark.h"
#include "benchwindow.h"

#include <malloc.h>

namespace {

/// Tells when a widget has been painted.
class Painted : public QObject
{
public:
    explicit Painted(QWidget *watched) { watched->installEventFilter(this); }
    bool once = false;

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        once = once || event->type() == QEvent::Paint;
        return false;
    }
};

void showUntilPainted(BenchWindow &host, QWidget *watched)
{
    Painted painted(watched);
    host.window.show();
    while (!painted.once)
        QCoreApplication::processEvents();
}

void insertPanel(BenchWindow &host)
{
    ControlTrackingPlugin *const panel = host.insertPanel();
    showUntilPainted(host, PanelInternals::ui(*panel).label_title);
}

// The form outlives the window in the measurements of this program.
void insertForm(BenchWindow &host)
{
    static Ui_root form;
    host.insertForm(form);
    showUntilPainted(host, form.label_title);
}

double heap()
{
    const struct mallinfo2 state = mallinfo2();
    return double(state.uordblks + state.hblkhd);
}

template <typename Insert>
Bench::TimedStep timed(Insert insert)
{
    return [insert] {
        BenchWindow host;
        return Bench::bestOf(1, [&] { insert(host); });
    };
}

// Of a second one: the first brings what a process has but once.
template <typename Insert>
double heapOf(Insert insert)
{
    BenchWindow first;
    insert(first);
    BenchWindow::turn();
    BenchWindow second;
    const double before = heap();
    insert(second);
    BenchWindow::turn();
    return heap() - before;
}

} // namespace

int main()
{
    const Application application;
    {
        BenchWindow warm; // style, fonts, pictures
        insertForm(warm);
    }
    Bench::timeInCopies("insertWidget to the first frame", "1.15", timed(insertPanel),
                        timed(insertForm));
    Bench::instructions(
        "insertWidget to the first frame", "1.15",
        [] {
            BenchWindow host;
            insertPanel(host);
        },
        [] {
            BenchWindow host;
            insertForm(host);
        });
    Bench::figure("memory of a panel", "bytes", "+65536", heapOf(insertPanel), heapOf(insertForm));
    return Bench::run();
}
