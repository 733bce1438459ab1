#pragma once

#include "orvpluginapi.h"
#include "panelwindow.h"
#include "recordingchannel.h"
#include "simulatedcamera.h"

#include <QFileInfo>
#include <QPointer>

#include <functional>
#include <memory>
#include <random>

/// A host with a window and a channel to a simulated camera. Loads one panel at a time.
class Host : public RecordingChannel
{
public:
    /// `file` is the plug-in. `seed` determines all random choices.
    Host(const QString &file, quint32 seed)
        : plugin(QFileInfo(file).absoluteFilePath()) // Qt looks elsewhere for relative ones
        , m_random(seed)
    {
    }

    /// Destroys the previous panel and its window. Loads a new panel and makes a new window.
    void load();

    void insert() { api->insertWidget(container); }
    void open(); ///< loads and inserts a panel, shows it, and lets 100 ms pass
    void reset();

    /// Lets time pass. Ends the check if the panel is gone afterwards.
    void live(std::chrono::milliseconds span) const;

    void destroyPanel();

    /// Destroys the window with everything in it, and the panel even if it is elsewhere.
    void destroyWindow();

    /// The widgets that a user could click now.
    QWidgetList controls() const;

    /// Clicks `control`, or presses the space bar on it.
    void use(QWidget *control);

    /// Uses a random control, if there is one, and then lets less than `limit` ms pass.
    void useAny(int limit = 1000);

    /// Ends the check if a request since the last call, or since load(), is not `fine`.
    void expectRequests(const QString &expected, const std::function<bool(const Request &)> &fine);

    /// A random number from 0 to `count` - 1.
    int any(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    std::chrono::milliseconds anyTime(int limit) { return std::chrono::milliseconds(any(limit)); }

    const QString plugin;     ///< the absolute path of the plug-in's file
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
