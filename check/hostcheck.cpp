#include "extensionrecord.h"
#include "orvpluginapi.h"
#include "panelplacement.h"
#include "stallmeter.h"
#include "trackingprotocol.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QLoggingCategory>
#include <QThread>

#include <algorithm>
#include <array>
#include <utility>

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(hostCheck, "orv_hostcheck")

/// A rule for hosts, and whether the host keeps it.
struct Rule
{
    enum State { NotYetSeen, Passed, Failed };

    const char *text;
    State state = NotYetSeen;
    QString seen = {};

    QString inWords() const { return seen.isEmpty() ? text : QString("%1: %2").arg(text, seen); }
};

static constexpr const char *stateNames[] = {"not yet seen", "passed", "failed"};

/// A panel that checks whether its host keeps the contract of OrvPluginApi. Shows a line for each
/// rule. Also writes the lines to the debug stream (category "orv_hostcheck"): each when its state
/// changes, and all of them when the instance is destroyed or the application ends.
///
/// Makes requests in insertWidget(), as panels do, and then once a second. Its requests only query
/// settings and read the camera's status.
class HostCheck : public QLabel, public OrvPluginApi
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
            judge(m_resetLater, false);
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
    void resizeEvent(QResizeEvent * /*event*/) override { makeRoom(); }

private:
    void judge(Rule &rule, bool kept, const QString &seen = {});
    void showRules();
    // If space is short, a layout shrinks a label with wrapped text to one line.
    void makeRoom() { setMinimumHeight(heightForWidth(width())); }
    bool noteCall(const char *function);
    void makeRequests();
    void askForSettings();
    void readStatus();
    QVariant request(int kind, const QVariant &record);
    void summarize() const;

    Rule m_channelFirst{"The channel is installed before insertWidget, and stays"};
    Rule m_resetLater{"resetToDefault comes only after insertWidget"};
    Rule m_insertedOnce{"insertWidget comes once, with a container that is shown"};
    Rule m_guiThread{"Every call comes on the GUI thread"};
    Rule m_language{"The answer to the setting \"language\" is a number"};
    Rule m_otherSetting{"A query for an unknown setting does no harm"};
    Rule m_status{
        "The answer to a read of control 8 is an ExtensionUnit of 280 bytes with selector 8,"
        " a length of at most 255, and zeros beyond it"};
    Rule m_answers{"Every answer comes within 1000 ms"};
    Rule m_thawed{"A frozen window thaws within 400 ms"};
    Rule m_destroyed{"The instance is destroyed as a QObject, not during a request"};
    const std::array<const Rule *, 10> m_rules{
        &m_channelFirst, &m_resetLater, &m_insertedOnce, &m_guiThread, &m_language,
        &m_otherSetting, &m_status,     &m_answers,      &m_thawed,    &m_destroyed};
    QTimer m_poll;
    StallMeter m_stalls;
    qint64 m_longestAnswer = 0; // ms
    int m_insertions = 0;
    bool m_requesting = false;
    static inline HostCheck *living = nullptr;
};

HostCheck::HostCheck()
{
    setFont(QFont(font().family(), 9));
    setWordWrap(true);
    setMargin(9);
    // Without a minimum, wrapped text would make the window of some hosts narrow and very high.
    setMinimumWidth(60 * fontMetrics().averageCharWidth());
    showRules();
    // Restarted after each answer, so that requests do not pile up in a slow host.
    m_poll.setSingleShot(true);
    m_poll.setInterval(1s);
    connect(&m_poll, &QTimer::timeout, this, &HostCheck::makeRequests);
    living = this;
    // An instance that still exists now crashes later, when its library is unloaded.
    qAddPostRoutine([] {
        if (living) {
            living->judge(living->m_destroyed, false, "the application ended first");
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
    // noteCall() posts calls from other threads. Judge them now.
    if (onGuiThread)
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    judge(m_destroyed, !m_requesting);
    summarize();
}

/// Sets the rule's state and logs a change. A failed rule stays failed.
void HostCheck::judge(Rule &rule, bool kept, const QString &seen)
{
    const Rule::State before = rule.state;
    if (before == Rule::Failed && kept)
        return;
    rule.state = kept ? Rule::Passed : Rule::Failed;
    rule.seen = seen;
    showRules();
    if (rule.state == before)
        return;
    if (kept)
        qCInfo(hostCheck, "passed: %s", qPrintable(rule.inWords()));
    else
        qCWarning(hostCheck, "failed: %s", qPrintable(rule.inWords()));
}

void HostCheck::showRules()
{
    // White text needs its own background, because the host's may be light.
    static constexpr const char *colors[] = {"#5F6368", "#2E7D32", "#C62828"};
    QString text = "<b>Host check</b>";
    for (const Rule *const rule : m_rules)
        text +=
            QString("<p style='margin: 6px 0'>"
                    "<span style='background: %1; color: white'>&nbsp;%2&nbsp;</span> %3</p>")
                .arg(colors[rule->state], stateNames[rule->state], rule->inWords().toHtmlEscaped());
    setText(text);
    makeRoom();
}

void HostCheck::insertWidget(QWidget *container)
{
    if (!noteCall("insertWidget"))
        return;
    judge(m_resetLater, true); // unless a reset came before
    if (++m_insertions > 1 || !container) {
        judge(m_insertedOnce, false,
              container ? QString("call %1").arg(m_insertions) : "there is no container");
        return;
    }
    PanelPlacement::insertFirst(this, container);
    makeRequests();
}

void HostCheck::showEvent(QShowEvent *event)
{
    QLabel::showEvent(event);
    if (m_insertions == 0 || m_insertedOnce.state == Rule::Passed)
        return;
    judge(m_insertedOnce, true);
    QTimer::singleShot(100ms, this, [this] {
        updateSpliter(this, this, true);
        QTimer::singleShot(400ms, this, [this] { judge(m_thawed, updatesEnabled()); });
    });
}

/// Returns whether the call came on the GUI thread. Judges that rule on the GUI thread, later if
/// necessary.
bool HostCheck::noteCall(const char *function)
{
    const bool kept = QThread::currentThread() == QCoreApplication::instance()->thread();
    QMetaObject::invokeMethod(this, [this, kept, function] {
        judge(m_guiThread, kept, kept ? "" : QString("%1 came on another thread").arg(function));
    });
    return kept;
}

void HostCheck::makeRequests()
{
    judge(m_channelFirst, bool(commandChannel));
    if (commandChannel && m_otherSetting.state == Rule::NotYetSeen)
        askForSettings();
    if (commandChannel)
        readStatus();
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
    judge(m_language, language.canConvert<int>() && !text, describeType(language));
    judge(m_otherSetting, true, describeType(query("orv_hostcheck_no_such_setting")));
}

void HostCheck::readStatus()
{
    // Qt ends the process if a type is registered again with another size.
    const int size = QMetaType::sizeOf(QMetaType::type("ExtensionUnit"));
    if (size != 0 && size != sizeof(ExtensionUnit)) {
        judge(m_status, false, QString("the host's ExtensionUnit has %1 bytes").arg(size));
        return;
    }
    const int selector = TrackingProtocol::statusSelector;
    const QVariant answer = request(ChannelRequest::Extension,
                                    QVariant::fromValue(extensionRecord(false, selector, {})));
    if (answer.userType() != qMetaTypeId<ExtensionUnit>()) {
        judge(m_status, false, describeType(answer));
        return;
    }
    const auto unit = answer.value<ExtensionUnit>();
    const int length = payloadOf(unit).size();
    const bool leftovers =
        std::any_of(unit.data + length, std::end(unit.data), [](quint8 byte) { return byte != 0; });
    judge(m_status, unit.selector == selector && unit.length == quint64(length) && !leftovers,
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
    m_longestAnswer = std::max(m_longestAnswer, time.elapsed());
    judge(m_answers, m_longestAnswer <= 1000,
          QString("the longest took %1 ms; the window was blocked for up to %2 ms")
              .arg(m_longestAnswer)
              .arg(m_stalls.longest() / 1ms));
    return answer;
}

void HostCheck::summarize() const
{
    qCInfo(hostCheck, "At the end:");
    for (const Rule *const rule : m_rules)
        qCInfo(hostCheck, "%s: %s", stateNames[rule->state], qPrintable(rule->inWords()));
}

#include "hostcheck.moc"
