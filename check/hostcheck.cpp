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
#include <chrono>
#include <iterator>
#include <utility>

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(hostCheck, "orv_hostcheck")

/// What is known of one rule, for the eye, a screen reader and, when its state changes, the debug
/// stream.
class RuleLine : public QLabel
{
    Q_OBJECT

public:
    enum State { NotYetSeen, Passed, Failed };

    RuleLine(QLayout &lines, const char *rule)
        : m_rule(QString::fromLatin1(rule))
    {
        setWordWrap(true);
        lines.addWidget(this);
        show(NotYetSeen, {});
    }
    State state() const { return m_state; }

    /// A rule that was broken stays so. `seen` goes behind the rule, unless it is empty.
    void judge(bool kept, const QString &seen = {})
    {
        const State before = m_state;
        if (before == Failed && kept)
            return;
        show(kept ? Passed : Failed, seen);
        if (m_state == Failed && before != Failed)
            qCWarning(hostCheck, "%s", qPrintable(accessibleName()));
        else if (m_state != before)
            qCInfo(hostCheck, "%s", qPrintable(accessibleName()));
    }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QLabel::resizeEvent(event);
        makeRoom();
    }

private:
    // Layouts count a label that wraps as one line where room is scarce, and cut off the rest.
    void makeRoom() { setMinimumHeight(heightForWidth(width())); }

    void show(State state, const QString &seen)
    {
        static constexpr const char *states[] = {"not yet seen", "passed", "failed"};
        // Behind the white word: what is behind the panel may be dark or light.
        static constexpr const char *colors[] = {"#5F6368", "#2E7D32", "#C62828"};
        m_state = state;
        const QString word = QString::fromLatin1(states[state]);
        const QString rest = seen.isEmpty() ? m_rule : m_rule + QLatin1String(": ") + seen;
        setAccessibleName(word + QLatin1String(": ") + rest);
        setText(
            QStringLiteral("<span style='background: %1; color: white'>&nbsp;%2&nbsp;</span> %3")
                .arg(QLatin1String(colors[state]), word, rest.toHtmlEscaped()));
        makeRoom();
    }

    const QString m_rule;
    State m_state = NotYetSeen;
};

/// A panel that says whether its host keeps the contract of OrvPluginApi: a line for each rule, in
/// the panel and, when it is first kept or first broken, on the debug stream (category
/// "orv_hostcheck"). When the instance goes, or the application without it, all lines go there once
/// more.
///
/// It asks within insertWidget, as panels do, and then once a second while it is visible. It sends
/// nothing: every request is a query for a setting or a get.
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
        return QStringLiteral("orv_hostcheck");
    }
    int category() override
    {
        noteCall("category");
        return 0; // as the panel's that it stands in for
    }
    void resetToDefault() override
    {
        if (noteCall("resetToDefault") && m_insertions == 0)
            m_resetLater.judge(false, QStringLiteral("it came before"));
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
    void ask();
    void askForSettings();
    void readStatus();
    QVariant request(int kind, const QVariant &record);
    void summarize() const;

    QVBoxLayout *const m_lines = new QVBoxLayout(this);
    RuleLine m_channelFirst{*m_lines, "The channel is installed before insertWidget, and stays"};
    RuleLine m_resetLater{*m_lines, "resetToDefault comes only after insertWidget"};
    RuleLine m_insertedOnce{*m_lines, "insertWidget comes once, with a container that is shown"};
    RuleLine m_guiThread{*m_lines, "Every call comes on the GUI thread"};
    RuleLine m_language{*m_lines, "The setting \"language\" is answered with a number"};
    RuleLine m_otherSetting{*m_lines, "A query for a setting that does not exist does no harm"};
    RuleLine m_status{*m_lines, "A get of control 8 is answered with an ExtensionUnit of 280 bytes,"
                                " with its selector 8, its length at most 255, zeros beyond it"};
    RuleLine m_answers{*m_lines, "Every answer comes within 1000 ms"};
    RuleLine m_thawed{*m_lines, "A frozen window is thawed when the event loop comes round"};
    RuleLine m_destroyed{*m_lines,
                         "The instance is destroyed as a QObject, outside of the channel"};
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
    m_lines->insertWidget(0, new QLabel(QStringLiteral("<b>Host check</b>")));
    // In a host that gives no width, lines that wrap would make a narrow window, higher than a
    // screen, and be cut off there.
    setMinimumWidth(60 * fontMetrics().averageCharWidth());
    // From the answer on: behind a slow host the window must have time to live.
    m_poll.setSingleShot(true);
    m_poll.setInterval(1s);
    connect(&m_poll, &QTimer::timeout, this, &HostCheck::ask);
    living = this;
    // An instance that is still there now goes with the library, and a widget crashes then.
    qAddPostRoutine([] {
        if (living) {
            living->m_destroyed.judge(false, QStringLiteral("came the application's end first"));
            living->summarize();
        }
        living = nullptr;
    });
}

HostCheck::~HostCheck()
{
    if (std::exchange(living, nullptr) != this)
        return; // all has been said
    const bool onGuiThread = noteCall("the destructor");
    // Calls on other threads, of which the event loop has not brought word yet.
    if (onGuiThread)
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    m_destroyed.judge(onGuiThread && !m_requesting,
                      !onGuiThread   ? QStringLiteral("came on another thread")
                      : m_requesting ? QStringLiteral("came within a call of it")
                                     : QString());
    summarize();
}

void HostCheck::insertWidget(QWidget *container)
{
    if (!noteCall("insertWidget"))
        return;
    m_resetLater.judge(true); // from here on it cannot come before
    if (++m_insertions > 1 || !container) {
        m_insertedOnce.judge(false, container ? QStringLiteral("came call %1").arg(m_insertions)
                                              : QStringLiteral("came no container"));
        return;
    }
    PanelPlacement::insertFirst(this, container);
    ask();
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
            m_thawed.judge(updatesEnabled(), updatesEnabled()
                                                 ? QString()
                                                 : QStringLiteral("still frozen 400 ms later"));
        });
    });
}

/// Returns whether the call comes on the GUI thread. On another, the line hears of it when the
/// event loop comes round.
bool HostCheck::noteCall(const char *function)
{
    const bool kept = QThread::currentThread() == QCoreApplication::instance()->thread();
    QMetaObject::invokeMethod(this, [this, kept, function] {
        m_guiThread.judge(kept,
                          kept ? QString()
                               : QStringLiteral("%1 came on another").arg(QLatin1String(function)));
    });
    return kept;
}

void HostCheck::ask()
{
    m_channelFirst.judge(bool(commandChannel),
                         commandChannel ? QString() : QStringLiteral("came none"));
    if (commandChannel && (isVisible() || !m_asked)) {
        if (!m_asked)
            askForSettings();
        m_asked = true;
        readStatus();
    }
    m_poll.start();
}

static QString whatCame(const QVariant &value)
{
    return QStringLiteral("came ") +
           (value.isValid() ? QLatin1String(value.typeName()) : QLatin1String("no value"));
}

void HostCheck::askForSettings()
{
    const auto query = [this](const QString &setting) {
        return request(ChannelRequest::Setting, QVariant::fromValue(SettingData{setting, 0}));
    };
    const QVariant language = query(QStringLiteral("language"));
    const bool text =
        language.userType() == QMetaType::QString || language.userType() == QMetaType::QByteArray;
    m_language.judge(language.canConvert<int>() && !text, whatCame(language));
    m_otherSetting.judge(true, whatCame(query(QStringLiteral("orv_hostcheck_no_such_setting"))));
}

void HostCheck::readStatus()
{
    // Qt ends the process when it is told of a record that it knows in another size.
    const int size = QMetaType::sizeOf(QMetaType::type("ExtensionUnit"));
    if (size != 0 && size != sizeof(ExtensionUnit)) {
        m_status.judge(false, QStringLiteral("came one of %1 bytes").arg(size));
        return;
    }
    ExtensionUnit get;
    get.selector = TrackingProtocol::statusSelector;
    const QVariant answer = request(ChannelRequest::Extension, QVariant::fromValue(get));
    if (answer.userType() != qMetaTypeId<ExtensionUnit>()) {
        m_status.judge(false, whatCame(answer));
        return;
    }
    const auto unit = answer.value<ExtensionUnit>();
    const auto length = std::min<quint64>(unit.length, sizeof unit.data);
    const bool leftovers =
        std::any_of(unit.data + length, std::end(unit.data), [](quint8 byte) { return byte != 0; });
    m_status.judge(unit.selector == get.selector && unit.length == length && !leftovers,
                   QStringLiteral("came selector %1, length %2%3")
                       .arg(unit.selector)
                       .arg(unit.length)
                       .arg(QLatin1String(leftovers ? ", other bytes beyond it" : "")));
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
                    QStringLiteral("last %1 ms, longest %2 ms; longest stall of the window %3 ms")
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
