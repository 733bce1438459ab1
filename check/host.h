#pragma once

#include "orvpluginapi.h"
#include "simulatedcamera.h"

#include <QPointer>
#include <QVector>
#include <QWidget>

#include <atomic>
#include <mutex>
#include <random>

/// One call of a panel's channel.
struct Request
{
    int kind;
    QVariant record;
    bool onGuiThread;
    bool afterEnd; ///< of the panel

    /// Of an extension request with its record; all zero in the others.
    ExtensionUnit unit() const { return record.value<ExtensionUnit>(); }
    QByteArray bytes() const;

    bool isExtension() const;
    bool asks() const;       ///< all others tell the camera or the host something
    QString problem() const; ///< why it is not well-formed; empty if it is
    QString inWords() const;
};

/// The host that a check plays to a panel, or to several one after another: a window, and a channel
/// with a simulated camera behind it.
class Host
{
public:
    /// All random choices follow from `seed`.
    Host(QString pluginFile, quint32 seed)
        : plugin(std::move(pluginFile))
        , m_random(seed)
    {
    }

    /// Destroys the last panel and window, if they are still there, and loads the plug-in for new
    /// ones.
    void load();

    void insert() { api->insertWidget(container); }

    void open(); ///< loads, inserts, shows, and lives through a tenth of a second
    void reset();

    /// Lets time pass. The panel must still be there then.
    void live(std::chrono::milliseconds span) const;

    void destroyPanel();

    /// Destroys the window with all that is in it, and the plug-in, should that have outlived it.
    void destroyWindow();

    /// The widgets that a user could click now.
    QWidgetList controls() const;

    /// A click on `control` or the space bar.
    void use(QWidget *control);

    /// Uses one of the controls, if there are any, and lives through less than `limit` ms.
    void useAny(int limit = 1000);

    /// Ends the check at a request since the last call that is not `fine`. Looks at those of the
    /// living panel, or at those that panels made after their end.
    void expectRequests(const QString &expected, const std::function<bool(const Request &)> &fine,
                        bool afterEnd = false);

    /// A number of 0 to `count` - 1; a span of less than `limit`.
    int any(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    std::chrono::milliseconds anyTime(int limit) { return std::chrono::milliseconds(any(limit)); }

    const QString plugin;     ///< the file, with its whole path
    QPointer<QWidget> window; ///< has room for any panel; not shown at first
    QPointer<QWidget> container;
    QPointer<QObject> instance;
    OrvPluginApi *api = nullptr; ///< the same
    SimulatedCamera camera;
    QVariant language;
    std::function<QVariant(ExtensionUnit)> answer; ///< to a get, in place of the camera's, if set

private:
    QVariant request(int kind, const QVariant &record, int life);

    std::mt19937 m_random;
    int m_lives = 0;
    std::atomic<int> m_livingOne = 0; ///< 0 if there is none
    std::mutex m_mutex;               ///< guards m_requests
    QVector<Request> m_requests;
};
