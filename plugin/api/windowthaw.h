#pragma once

#include <QApplication>
#include <QLayout>
#include <QPointer>
#include <QTimer>
#include <QWidget>

/// \file
/// For panels; hosts do not need it.

/// Lets a panel change its rows without flicker. The panel freezes the window with
/// `setUpdatesEnabled(false)`, shows and hides rows, invalidates layouts, and calls thawLater().
namespace WindowThaw {

/// Lays out, thaws and paints a frozen window on the next turn of the event loop, once for all
/// calls until then. Does so even if the panel is deleted meanwhile, so that no window stays
/// frozen.
inline void thawLater(QWidget *window)
{
    static constexpr char pending[] = "orv_thawPending";
    if (window->property(pending).toBool())
        return;
    window->setProperty(pending, true);
    QTimer::singleShot(0, qApp, [window = QPointer<QWidget>(window)] {
        if (window) {
            // Before the events below: if one of them freezes the window again, its call of
            // thawLater() must schedule another step.
            window->setProperty(pending, QVariant());
            if (QLayout *const layout = window->layout())
                layout->activate();
            // An event may open a dialog, whose event loop runs until the user closes it. The
            // window must not stay frozen that long.
            QTimer dialogOpened;
            QObject::connect(&dialogOpened, &QTimer::timeout, window.data(),
                             [window] { window->setUpdatesEnabled(true); });
            dialogOpened.setSingleShot(true);
            dialogOpened.start(50);
            // Deliver layout requests first. Within a timer, processEvents() with GLib skips events
            // that were posted earlier: rows just shown would be laid out, and painted again, after
            // the thaw.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        }
        // An event may have deleted the window.
        if (window) {
            window->setUpdatesEnabled(true);
            window->repaint();
        }
        // If a widget of the frozen window has become a window itself, Qt never thaws it. A window
        // that its owner froze explicitly stays frozen.
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *const other : windows) {
            if (!other->updatesEnabled() && !other->testAttribute(Qt::WA_ForceUpdatesDisabled))
                other->setUpdatesEnabled(true);
        }
    });
}

} // namespace WindowThaw
