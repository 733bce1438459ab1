#pragma once

#include "orvpluginapi.h"
#include "panelwindow.h"
#include "recordingchannel.h"
#include "simulatedcamera.h"

#include <QPointer>

#include <functional>
#include <memory>
#include <random>

/// The host that a check plays to a panel, or to several in succession: a window, and a channel to
/// a simulated camera.
class Host : public RecordingChannel
{
public:
    /// All random choices follow from `seed`.
    Host(QString pluginFile, quint32 seed)
        : plugin(std::move(pluginFile))
        , m_random(seed)
    {
    }

    /// Destroys the previous panel and window, if they still exist, and loads the plug-in for new
    /// ones.
    void load();

    void insert() { api->insertWidget(container); }

    void open(); ///< loads and inserts a panel, shows it, and waits a tenth of a second
    void reset();

    /// Lets time pass. The panel must still be there afterwards.
    void live(std::chrono::milliseconds span) const;

    void destroyPanel();

    /// Destroys the window with everything in it, and the panel if that was elsewhere.
    void destroyWindow();

    /// The widgets that a user could click now.
    QWidgetList controls() const;

    /// Clicks `control`, or presses the space bar on it.
    void use(QWidget *control);

    /// Uses a random control, if there is one, and waits for less than `limit` ms.
    void useAny(int limit = 1000);

    /// Ends the check if a request since the last call is not `fine`. Looks only at requests of the
    /// living panel, or only at those that panels made after their end.
    void expectRequests(const QString &expected, const std::function<bool(const Request &)> &fine,
                        bool afterEnd = false);

    /// A random number from 0 to `count` - 1.
    int any(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    std::chrono::milliseconds anyTime(int limit) { return std::chrono::milliseconds(any(limit)); }

    const QString plugin;     ///< the absolute path of its file
    QPointer<QWidget> window; ///< has room for any panel; not shown at first
    QPointer<QWidget> container;
    QPointer<QObject> instance;
    OrvPluginApi *api = nullptr; ///< the interface of `instance`
    SimulatedCamera camera;
    /// Answers a read in place of the camera, if set.
    std::function<QVariant(const ExtensionUnit &)> readAnswer;

protected:
    QVariant answer(const Request &request) override;

private:
    std::mt19937 m_random;
    std::unique_ptr<PanelWindow> m_window;
};
