#include "extensionrecord.h"
#include "hostrules.h"
#include "orvpluginapi.h"
#include "panelplacement.h"
#include "stallmeter.h"
#include "trackingprotocol.h"

#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QImageReader>
#include <QPointer>
#include <QTextBrowser>
#include <QThread>
#include <QtMath>

#include <algorithm>
#include <atomic>
#include <utility>

using namespace std::chrono_literals;

/// Destroyed with its parent, on the GUI thread.
struct OwnedStallMeter : QObject, StallMeter
{
    using QObject::QObject;
};

/// A panel that checks whether its host keeps the contract of OrvPluginApi. Shows a line for each
/// rule. Also writes the lines to the debug stream (category "orv_hostcheck"): each when its state
/// changes, and all of them when the instance is destroyed or the application ends.
///
/// Makes requests in insertWidget(), as panels do, and then once a second. Its requests only query
/// settings and read the camera's status.
///
/// Not a widget, because a faulty host may create, call or delete it on another thread.
class HostCheck : public QObject, public OrvPluginApi
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.talsen.OrvPluginApi")
    Q_INTERFACES(OrvPluginApi)

public:
    HostCheck();
    ~HostCheck() override;

    QString name() override { return noteCall("name", "orv_hostcheck"); }
    int category() override { return noteCall("category", 0); }
    void resetToDefault() override
    {
        noteCall("resetToDefault");
        if (m_insertions == 0)
            judge(m_rules.resetLater, false);
    }
    void insertWidget(QWidget *container) override;
    void syncPropValue(QString /*property*/, long /*value*/) override { noteCall("syncPropValue"); }
    QJsonObject getCurrentParams() override { return noteCall("getCurrentParams", QJsonObject()); }
    void setCurrentParams(QJsonObject /*params*/) override { noteCall("setCurrentParams"); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void judge(Rule &rule, bool kept, const QString &seen = {});
    template <typename T = int>
    T noteCall(const char *function, T result = {});
    void insert(QWidget *container);
    void makeRequests();
    void lookForPictures();
    void askForSettings();
    void readStatus();
    QVariant request(int kind, const QVariant &record);

    HostRules m_rules;
    QPointer<QTextBrowser> m_view;
    OwnedStallMeter *m_stalls = nullptr;
    qint64 m_longestAnswer = 0; // ms
    std::atomic<int> m_insertions{0};
    bool m_requesting = false;
    bool m_wasShown = false;
    static inline HostCheck *living = nullptr;
};

HostCheck::HostCheck()
{
    noteCall("the constructor");
    moveToThread(QCoreApplication::instance()->thread());
    living = this;
    // An instance that still exists now crashes later, when its library is unloaded.
    qAddPostRoutine([] {
        if (living) {
            living->judge(living->m_rules.destroyed, false, "the application ended first");
            living->m_rules.log();
        }
        living = nullptr;
    });
}

HostCheck::~HostCheck()
{
    if (std::exchange(living, nullptr) != this)
        return; // the summary is already written
    noteCall("the destructor");
    judge(m_rules.destroyed, !m_requesting);
    m_rules.log();
    if (m_view)
        m_view->deleteLater(); // this may be another thread
}

/// Judges and shows a rule, on any thread.
void HostCheck::judge(Rule &rule, bool kept, const QString &seen)
{
    m_rules.judge(rule, kept, seen);
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_view)
                m_view->setHtml(m_rules.inHtml());
        },
        Qt::QueuedConnection);
}

/// Judges whether the call came on the GUI thread. Returns `result`.
template <typename T>
T HostCheck::noteCall(const char *function, T result)
{
    const bool kept = QThread::currentThread() == QCoreApplication::instance()->thread();
    judge(m_rules.guiThread, kept, kept ? "" : QString("%1 came on another thread").arg(function));
    return result;
}

void HostCheck::insertWidget(QWidget *container)
{
    noteCall("insertWidget");
    judge(m_rules.resetLater, true); // unless a reset came before
    if (++m_insertions > 1 || !container) {
        judge(m_rules.insertedOnce, false,
              container ? QString("call %1").arg(m_insertions) : "there is no container");
        return;
    }
    // Later, if this is another thread.
    QMetaObject::invokeMethod(this, [this, container = QPointer<QWidget>(container)] {
        if (container)
            insert(container);
    });
}

void HostCheck::insert(QWidget *container)
{
    m_view = new QTextBrowser;
    QFont font(m_view->font().family(), 9);
    font.setPixelSize(QFontInfo(font).pixelSize()); // Qt wraps text of a fractional size wrongly
    m_view->setFont(font);
    m_view->setFrameShape(QFrame::NoFrame);
    connect(m_view->document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged,
            this, [this](const QSizeF &size) { m_view->setMinimumHeight(qCeil(size.height())); });
    m_view->installEventFilter(this);
    PanelPlacement::insertFirst(m_view, container);
    setParent(container);
    m_stalls = new OwnedStallMeter(m_view);
    lookForPictures();
    makeRequests();
}

bool HostCheck::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && !std::exchange(m_wasShown, true)) {
        judge(m_rules.insertedOnce, true);
        QTimer::singleShot(100ms, this, [this] {
            updateSpliter(m_view, m_view, true);
            QTimer::singleShot(400ms, this,
                               [this] { judge(m_rules.thawed, m_view->updatesEnabled()); });
        });
    }
    return QObject::eventFilter(watched, event);
}

void HostCheck::lookForPictures()
{
    QStringList problems;
    for (const char *const name :
         {"img_tracking_half", "img_tracking_half_select", "img_tracking_full",
          "img_tracking_full_select", "img_tracking_multi", "img_tracking_multi_select",
          "icon_delete", "icon_delete_hover"}) {
        QImageReader reader(QString(":/UI/%1.svg").arg(name));
        if (!reader.canRead())
            problems << reader.fileName() + ": " + reader.errorString();
    }
    judge(m_rules.pictures, problems.isEmpty(), problems.join(", "));
}

void HostCheck::makeRequests()
{
    judge(m_rules.channelFirst, bool(commandChannel));
    if (commandChannel && m_rules.otherSetting.state == Rule::NotYetSeen)
        askForSettings();
    if (commandChannel)
        readStatus();
    // Started after each answer, so that requests do not pile up in a slow host.
    QTimer::singleShot(1s, this, &HostCheck::makeRequests);
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
    judge(m_rules.language, language.canConvert<int>() && !text, describeType(language));
    judge(m_rules.otherSetting, true, describeType(query("orv_hostcheck_no_such_setting")));
}

void HostCheck::readStatus()
{
    // Qt ends the process if a type is registered again with another size.
    const int size = QMetaType::sizeOf(QMetaType::type("ExtensionUnit"));
    if (size != 0 && size != sizeof(ExtensionUnit)) {
        judge(m_rules.status, false, QString("the host's ExtensionUnit has %1 bytes").arg(size));
        return;
    }
    const int selector = TrackingProtocol::statusSelector;
    const QVariant answer = request(ChannelRequest::Extension,
                                    QVariant::fromValue(extensionRecord(false, selector, {})));
    if (answer.userType() != qMetaTypeId<ExtensionUnit>()) {
        judge(m_rules.status, false, describeType(answer));
        return;
    }
    const auto unit = answer.value<ExtensionUnit>();
    const int length = payloadOf(unit).size();
    const bool leftovers =
        std::any_of(unit.data + length, std::end(unit.data), [](quint8 byte) { return byte != 0; });
    judge(m_rules.status, unit.selector == selector && unit.length == quint64(length) && !leftovers,
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
    judge(m_rules.answers, m_longestAnswer <= 1000,
          QString("the longest took %1 ms; the window was blocked for up to %2 ms")
              .arg(m_longestAnswer)
              .arg(m_stalls->longest() / 1ms));
    return answer;
}

#include "hostcheck.moc"
