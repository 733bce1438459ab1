#pragma once

#include <QApplication>
#include <QLayout>
#include <QPointer>
#include <QTimer>
#include <QWidget>

/// \file
/// For panels; a host calls nothing of this.

/// How a panel changes its rows without flicker: it freezes the window with
/// `setUpdatesEnabled(false)`, shows, hides and invalidates, and calls thawLater().
namespace WindowThaw {

/// Lays out, thaws and paints a frozen window on the next turn of the event loop, once for all
/// calls until then. The step belongs to the application, not to the panel: a panel that is deleted
/// meanwhile leaves no frozen window behind.
inline void thawLater(QWidget *window)
{
    static constexpr char pending[] = "orv_thawPending";
    if (window->property(pending).toBool())
        return;
    window->setProperty(pending, true);
    QTimer::singleShot(0, qApp, [window = QPointer<QWidget>(window)] {
        if (window) {
            // Before the events below: one of them may freeze the window again, and its call of
            // thawLater() must then ask for a step of its own.
            window->setProperty(pending, QVariant());
            if (QLayout *const layout = window->layout())
                layout->activate();
            // One of the events may open a dialog, whose event loop returns only when the user
            // closes it. The window must not stay frozen behind it.
            QTimer dialogOpened;
            QObject::connect(&dialogOpened, &QTimer::timeout, window.data(),
                             [window] { window->setUpdatesEnabled(true); });
            dialogOpened.setSingleShot(true);
            dialogOpened.start(50);
            // Layout requests first, by name. processEvents() asks GLib, which, from within a
            // timer, passes over events that were posted before it: rows just shown would be laid
            // out, and painted once more, after the thaw.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        }
        // One of the events may have deleted the window.
        if (window) {
            window->setUpdatesEnabled(true);
            window->repaint();
        }
        // A widget that was frozen with its window and then made a window itself stays frozen, and
        // Qt has nothing that would ever thaw it. A window that was frozen by name is its owner's.
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *const other : windows) {
            if (!other->updatesEnabled() && !other->testAttribute(Qt::WA_ForceUpdatesDisabled))
                other->setUpdatesEnabled(true);
        }
    });
}

} // namespace WindowThaw
