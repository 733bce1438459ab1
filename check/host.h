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

/// A host with a window and a channel to a simulated camera. Loads one panel at a time. Uses the
/// controls of each dialog and menu that the panel opens, and then closes it.
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

    void insert(const QString &circumstances = {}); ///< these words are part of the step's name
    void open(); ///< loads and inserts a panel, shows it, and lets 100 ms pass
    void reset();

    /// Lets time pass. Ends the check if the panel is gone afterwards, unless the host destroyed
    /// it.
    void live(std::chrono::milliseconds span) const;

    void destroyPanel();

    /// Destroys the window with everything in it, and the panel even if it is elsewhere.
    void destroyWindow();

    static QWidget *openDialog(); ///< a modal dialog or a menu; null if none is open

    /// The widgets that a user could click now, except in modal dialogs.
    QWidgetList controls() const;

    /// Ways to use a control: click its middle, click its left end, press Space, Down or Return, or
    /// ask for its menu. Most controls react to one of the first three.
    enum Way { Middle, LeftEnd, Space, Down, Return, Menu, WayCount };
    static constexpr int mainWays = Down;

    /// Uses `control` and waits until the dialogs that it opens are closed.
    void use(QWidget *control, int way);

    /// Uses a random control, if there is one, and then lets less than `limit` ms pass.
    void useAny(int limit = 1000);

    /// Uses each control in each way, also those that appear meanwhile. Each time, lets `pause`
    /// pass and calls `then`.
    void useAll(
        std::chrono::milliseconds pause = std::chrono::milliseconds(20),
        const std::function<void()> &then = [] {});

    /// Ends the check at each request that is not `fine`, until the next call.
    void expectRequests(const QString &expected, std::function<bool(const Request &)> fine);

    /// A random number from 0 to `count` - 1.
    int any(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    std::chrono::milliseconds anyTime(int limit) { return std::chrono::milliseconds(any(limit)); }

    static std::chrono::milliseconds realTime(); ///< since the system started
    /// The real time without the time that this thread has waited for a processor, so that other
    /// programs do not matter.
    static std::chrono::milliseconds ownTime();
    /// Whether the check may go on repeating, which takes long if the panel sleeps.
    bool hasTime() const { return realTime() - m_start < std::chrono::seconds(5); }

    const QString plugin;     ///< the absolute path of the plug-in's file
    QPointer<QWidget> window; ///< not shown at first
    QPointer<QWidget> container;
    QPointer<QObject> instance;
    OrvPluginApi *api = nullptr; ///< the interface of `instance`
    SimulatedCamera camera;
    /// Answers a read in place of the camera, if set.
    std::function<QVariant(const ExtensionUnit &)> readAnswer;
    std::function<void()> duringRequest; ///< if set, runs while the panel waits for an answer
    std::function<void()> inDialog;      ///< if set, runs in place of using an open dialog or menu

protected:
    QVariant answer(const Request &request) override;

private:
    void press(QWidget *control, int way);
    void visitDialog();
    void useDialog(QWidget *dialog);

    std::mt19937 m_random;
    std::unique_ptr<PanelWindow> m_window;
    std::mutex m_mutex; ///< guards m_expected and m_fine
    QString m_expected;
    std::function<bool(const Request &)> m_fine;
    int m_dialogVisits = 0;
    int m_dialogUses = 0;
    const std::chrono::milliseconds m_start = realTime();
};
