#include "extensionrecord.h"
#include "orvpluginapi.h"
#include "panelplacement.h"
#include "ruleline.h"
#include "stallmeter.h"
#include "trackingprotocol.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(hostCheck, "orv_hostcheck")

/// A panel that checks whether its host keeps the contract of OrvPluginApi. It has a line for each
/// rule. Lines also go to the debug stream (category "orv_hostcheck"): each when it first passes or
/// fails, and all of them when the instance is destroyed or the application ends.
///
/// It makes requests in insertWidget(), as panels do, and then once a second while it is visible.
/// All of them only read a setting or the camera.
class HostCheck : public QWidget, public OrvPluginApi
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.talsen.OrvPluginApi")
    Q_INTERFACES(OrvPluginApi)

public:
    HostCheck();
    ~HostCheck() override;

    QString name() override
    {
        noteCall("name");
        return "orv_hostcheck";
    }
    int category() override
    {
        noteCall("category");
        return 0;
    }
    void resetToDefault() override
    {
        if (noteCall("resetToDefault") && m_insertions == 0)
            m_resetLater.judge(false, "it came before");
    }
    void insertWidget(QWidget *container) override;
    void syncPropValue(QString /*property*/, long /*value*/) override { noteCall("syncPropValue"); }
    QJsonObject getCurrentParams() override
    {
        noteCall("getCurrentParams");
        return {};
    }
    void setCurrentParams(QJsonObject /*params*/) override { noteCall("setCurrentParams"); }

protected:
    void showEvent(QShowEvent *event) override;

private:
    bool noteCall(const char *function);
    void makeRequests();
    void askForSettings();
    void readStatus();
    QVariant request(int kind, const QVariant &record);
    void summarize() const;

    QVBoxLayout *const m_lines = new QVBoxLayout(this);
    RuleLine m_channelFirst{*m_lines, "The channel is installed before insertWidget, and stays"};
    RuleLine m_resetLater{*m_lines, "resetToDefault comes only after insertWidget"};
    RuleLine m_insertedOnce{*m_lines, "insertWidget comes once, with a container that is shown"};
    RuleLine m_guiThread{*m_lines, "Every call comes on the GUI thread"};
    RuleLine m_language{*m_lines, "The answer to the setting \"language\" is a number"};
    RuleLine m_otherSetting{*m_lines, "A query for an unknown setting does no harm"};
    RuleLine m_status{*m_lines, "The answer to a read of control 8 is an ExtensionUnit of 280 bytes"
                                " with selector 8, a length of at most 255, and zeros beyond it"};
    RuleLine m_answers{*m_lines, "Every answer comes within 1000 ms"};
    RuleLine m_thawed{*m_lines, "The event loop thaws a frozen window"};
    RuleLine m_destroyed{*m_lines, "The instance is destroyed as a QObject, not during a request"};
    QTimer m_poll;
    StallMeter m_stalls;
    qint64 m_longestAnswer = 0; // ms
    int m_insertions = 0;
    bool m_asked = false;
    bool m_requesting = false;
    static inline HostCheck *living = nullptr;
};

HostCheck::HostCheck()
{
    QFont small = font();
    small.setPointSize(9);
    setFont(small);
    m_lines->insertWidget(0, new QLabel("<b>Host check</b>"));
    // In a host that sets no width, lines that wrap would make the window narrow and too high.
    setMinimumWidth(60 * fontMetrics().averageCharWidth());
    // A single shot, started after each answer, leaves the window responsive behind a slow host.
    m_poll.setSingleShot(true);
    m_poll.setInterval(1s);
    connect(&m_poll, &QTimer::timeout, this, &HostCheck::makeRequests);
    living = this;
    // An instance that still exists now goes with the library, and a widget crashes then.
    qAddPostRoutine([] {
        if (living) {
            living->m_destroyed.judge(false, "the application ended first");
            living->summarize();
        }
        living = nullptr;
    });
}

HostCheck::~HostCheck()
{
    if (std::exchange(living, nullptr) != this)
        return; // the summary is already written
    const bool onGuiThread = noteCall("the destructor");
    // Handles the notes of calls on other threads.
    if (onGuiThread)
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    m_destroyed.require(onGuiThread, "it was on another thread");
    m_destroyed.require(!m_requesting, "it was during a request");
    summarize();
}

void HostCheck::insertWidget(QWidget *container)
{
    if (!noteCall("insertWidget"))
        return;
    m_resetLater.judge(true); // it can no longer come before
    if (++m_insertions > 1 || !container) {
        m_insertedOnce.judge(false, container ? QString("call %1").arg(m_insertions)
                                              : "there is no container");
        return;
    }
    PanelPlacement::insertFirst(this, container);
    makeRequests();
}

void HostCheck::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_insertions == 0 || m_insertedOnce.state() == RuleLine::Passed)
        return;
    m_insertedOnce.judge(true);
    QTimer::singleShot(100ms, this, [this] {
        updateSpliter(this, &m_thawed, true);
        QTimer::singleShot(400ms, this, [this] { // far later than the thaw is due
            m_thawed.require(updatesEnabled(), "still frozen 400 ms later");
        });
    });
}

/// Returns whether the call comes on the GUI thread. Updates the line there.
bool HostCheck::noteCall(const char *function)
{
    const bool kept = QThread::currentThread() == QCoreApplication::instance()->thread();
    QMetaObject::invokeMethod(this, [this, kept, function] {
        m_guiThread.require(kept, QString("%1 came on another").arg(function));
    });
    return kept;
}

void HostCheck::makeRequests()
{
    m_channelFirst.require(bool(commandChannel), "there is none");
    if (commandChannel && (isVisible() || !m_asked)) {
        if (!m_asked)
            askForSettings();
        m_asked = true;
        readStatus();
    }
    m_poll.start();
}

static QString describeType(const QVariant &value)
{
    return value.isValid() ? QString("a value of type %1").arg(value.typeName()) : "no value";
}

void HostCheck::askForSettings()
{
    const auto query = [this](const QString &setting) {
        return request(ChannelRequest::Setting, QVariant::fromValue(SettingData{setting, 0}));
    };
    const QVariant language = query("language");
    const bool text =
        language.userType() == QMetaType::QString || language.userType() == QMetaType::QByteArray;
    m_language.judge(language.canConvert<int>() && !text, describeType(language));
    m_otherSetting.judge(true, describeType(query("orv_hostcheck_no_such_setting")));
}

void HostCheck::readStatus()
{
    // Qt ends the process when a type is registered a second time with another size.
    const int size = QMetaType::sizeOf(QMetaType::type("ExtensionUnit"));
    if (size != 0 && size != sizeof(ExtensionUnit)) {
        m_status.judge(false, QString("the host's has %1 bytes").arg(size));
        return;
    }
    const int selector = TrackingProtocol::statusSelector;
    const QVariant answer = request(ChannelRequest::Extension,
                                    QVariant::fromValue(extensionRecord(false, selector, {})));
    if (answer.userType() != qMetaTypeId<ExtensionUnit>()) {
        m_status.judge(false, describeType(answer));
        return;
    }
    const auto unit = answer.value<ExtensionUnit>();
    const int length = payloadOf(unit).size();
    const bool leftovers =
        std::any_of(unit.data + length, std::end(unit.data), [](quint8 byte) { return byte != 0; });
    m_status.judge(unit.selector == selector && unit.length == quint64(length) && !leftovers,
                   QString("selector %1, length %2%3")
                       .arg(unit.selector)
                       .arg(unit.length)
                       .arg(leftovers ? ", other bytes beyond it" : ""));
}

QVariant HostCheck::request(int kind, const QVariant &record)
{
    QElapsedTimer time;
    time.start();
    m_requesting = true;
    QVariant answer = commandChannel(kind, record);
    m_requesting = false;
    const qint64 last = time.elapsed();
    m_longestAnswer = std::max(m_longestAnswer, last);
    m_answers.judge(m_longestAnswer <= 1000,
                    QString("last %1 ms, longest %2 ms; longest stall of the window %3 ms")
                        .arg(last)
                        .arg(m_longestAnswer)
                        .arg(m_stalls.longest() / 1ms));
    return answer;
}

void HostCheck::summarize() const
{
    const auto lines = findChildren<RuleLine *>();
    int counts[] = {0, 0, 0};
    for (const RuleLine *const line : lines)
        ++counts[line->state()];
    qCInfo(hostCheck, "At the end %d passed, %d failed, %d not yet seen:", counts[RuleLine::Passed],
           counts[RuleLine::Failed], counts[RuleLine::NotYetSeen]);
    for (const RuleLine *const line : lines)
        qCInfo(hostCheck, "%s", qPrintable(line->accessibleName()));
}

#include "hostcheck.moc"
