#include "support.h"

#include <QElapsedTimer>
#include <QFormLayout>
#include <QScreen>
#include <QStackedLayout>

/// The panel between its user, its host and a camera. Each run has a density of its own.
class TestPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void behaviour_data();
    void behaviour();
    void density();
    void timeLine();
    void slowCameraDoesNotPileUp();
    void language_data();
    void language();
    void catalogMissing();
    void containers_data();
    void containers();

private:
    double m_factor = 1.0;
};

namespace {

/// What the panel shows, in words: switch, type, mode, composition and its button, visible rows.
QString shown(HostedPanel &hosted)
{
    QStringList words{hosted.ui()->sw_title->GetStatus() ? "on" : "off"};
    const auto checked = [&](std::initializer_list<const char *> names) {
        for (const char *name : names) {
            if (hosted.find<QAbstractButton>(name)->isChecked())
                words << QString(name).section('_', 1, 1);
        }
    };
    checked({"rb_normal", "rb_hand", "rb_whiteboard", "rb_sport"});
    words << (hosted.ui()->sw_picture_mode->GetStatus() ? "composed" : "plain");
    checked({"wg_half_body", "wg_full_body", "wg_multi_body"});
    const QPair<QWidget *, const char *> rows[] = {
        {hosted.ui()->frame_spliter, "|body"},
        {hosted.ui()->frame_picture_title, "|title"},
        {hosted.ui()->frame_picture_mode, "|pictures"},
        {hosted.ui()->frame_limit_title, "|area"},
        {hosted.ui()->frame_limit_setting_spliter, "|area"},
    };
    for (const auto &row : rows) {
        if (!row.first->isHidden())
            words << row.second;
    }
    return words.join(' ');
}

const struct Row
{
    const char *name;
    const char *camera; // its status block when the panel is built
    const char *script; // what happens then, see play()
    const char *sent;   // every command and notice from set-up on
    const char *panel;  // what it shows in the end
} rows[] = {
    // The camera's state when the panel is built. Nothing is echoed but the composition.
    {"all", "0001000202", "", "13=2", "on normal sport composed full |body |title |pictures"},
    {"off", "0000010100", "", "", "off hand plain"},
    {"off, composed", "0000000201", "", "13=1", "off normal sport composed half"},
    {"plain", "FF01000100", "", "", "on normal plain |body |title"},
    {"board", "0001020103", "", "13=3", "on whiteboard composed multi |body"},
    {"short, applied in full", "0001010200", "length=1", "", "on hand sport plain |body"},
    {"tracking above 1", "0007000100", "", "", "on normal plain |body |title"},
    {"unknown type", "0001070100", "", "", "on normal plain |body"},
    {"unknown mode", "0001000000", "", "", "on normal plain |body |title"},
    {"unknown composition", "0001000904", "", "", "on normal plain |body |title |pictures"},
    {"late", "0001000203", "late poll wait poll", "13=3",
     "on normal sport composed multi |body |title |pictures"},
    // A camera that does not answer, then, and then does.
    {"silent", "0001000101", "silent retry poll", "", "off normal plain"},
    {"back after the retry", "0001000101", "silent retry poll length=60 poll", "",
     "on normal plain |body |title"},
    {"back for the retry", "0001000101", "silent length=60 retry", "13=1",
     "on normal composed half |body |title |pictures"},
    {"foreign answer", "0001000101", "foreign retry poll", "", "off normal plain"},
    // The poll follows tracking and type, and sends nothing.
    {"nothing new", "0001000202", "poll poll", "13=2",
     "on normal sport composed full |body |title |pictures"},
    {"switched off", "0001000202", "wait camera=0000000202 poll poll", "13=2",
     "off normal sport composed full"},
    {"switched on", "0000000100", "wait camera=0001000100 poll poll", "",
     "on normal plain |body |title"},
    {"off and on in a slide's time", "0001000100",
     "wait camera=0000000100 poll turn camera=0001000100 poll wait poll", "",
     "on normal plain |body |title"},
    {"hand", "0001000202", "camera=0001010101 poll", "13=2", "on hand sport composed full |body"},
    {"board by 3 bytes", "0001010100", "camera=0001020100 length=3 poll", "",
     "on whiteboard plain |body"},
    {"basic again", "0001010101", "camera=0001000203 poll", "13=1",
     "on normal composed half |body |title |pictures"},
    {"poll: unknown type", "0001010100", "camera=0001090100 poll", "", "on hand plain |body"},
    {"poll: tracking above 1", "0001000100", "camera=0003000100 poll wait poll", "",
     "on normal plain |body |title"},
    {"poll: 2 bytes", "0001000100", "camera=0000010100 length=2 poll", "",
     "on normal plain |body |title"},
    {"out of sight", "0001000202", "hide camera=0000010101 poll wait camera=0001000202 poll show",
     "13=2", "on normal sport composed full |body |title |pictures"},
    // Each action reaches the camera, once.
    {"tracking off", "0001000100", "wait sw_title", "04=0 notice", "off normal plain"},
    {"tracking on at once", "0000000100", "sw_title", "04=1", "on normal plain |body |title"},
    {"tracking on, hand", "0000010100", "sw_title", "04=1", "on hand plain |body"},
    {"off and on", "0001000101", "wait sw_title wait sw_title", "13=1 04=0 notice 04=1",
     "on normal composed half |body |title |pictures"},
    {"to hand", "0001000100", "rb_hand", "10=0 notice 10=1 notice", "on hand plain |body"},
    {"to board", "0001000101", "rb_whiteboard", "13=1 10=0 notice 10=2 notice",
     "on whiteboard composed half |body"},
    {"the checked type", "0001000100", "rb_normal", "", "on normal plain |body |title"},
    {"to sport", "0001000100", "rb_sport", "07=1 07=2", "on normal sport plain |body |title"},
    {"to standard", "0001000200", "rb_normal_mode", "07=2 07=1", "on normal plain |body |title"},
    {"composed at once", "0001000100", "sw_picture_mode", "13=1 13=1",
     "on normal composed half |body |title |pictures"},
    {"composition off and on", "0001000103", "wait sw_picture_mode wait sw_picture_mode",
     "13=3 13=0 notice 13=3", "on normal composed multi |body |title |pictures"},
    {"full body", "0001000101", "wg_full_body", "13=1 13=1 13=2",
     "on normal composed full |body |title |pictures"},
    {"collapsed", "0001000101", "wait frame_title", "13=1", "on normal composed half"},
    {"expanded again", "0001000101", "wait frame_title wait frame_title", "13=1",
     "on normal composed half |body |title |pictures"},
    {"expanded again, hand", "0001010100", "wait frame_title wait frame_title", "",
     "on hand plain |body"},
    {"title while off", "0000000100", "frame_title", "", "off normal plain"},
    {"a row that comes into sight", "0001010100", "rb_normal sw_picture_mode",
     "10=1 notice 10=0 notice 13=1 13=1", "on normal composed half |body |title |pictures"},
    {"a body that comes into sight", "0000000101", "wait sw_title wait sw_picture_mode",
     "13=1 04=1 13=0 notice", "on normal plain half |body |title"},
    {"a window that changes", "0001000100", "wait resize sw_title turn resize", "04=0 notice",
     "off normal plain"},
    {"two switches and polls", "0001000101", "wait sw_title poll sw_picture_mode poll",
     "13=1 04=0 notice 13=0 notice", "off normal plain half"},
    // Reset moves the controls as a user does.
    {"reset: nothing to do", "0001000100", "reset", "", "on normal plain |body |title"},
    {"reset at once", "0000000100", "reset", "04=1", "on normal plain |body |title"},
    {"reset of a hidden row", "0001010201", "wait reset",
     "13=1 10=1 notice 10=0 notice 07=2 07=1 13=0 notice", "on normal plain half |body |title"},
    {"reset of everything", "0000020203", "wait reset",
     "13=3 10=2 notice 10=0 notice 07=2 07=1 04=1 13=0 notice",
     "on normal plain multi |body |title"},
};

/// One word of a script; any other word is a control to press.
void play(HostedPanel &hosted, const QString &word)
{
    if (word == "wait") {
        settle(hosted.window);
        QTest::qWait(60); // past the 200 ms in which the title row takes no second press
    } else if (word == "turn") {
        QTest::qWait(20); // of the event loop, with slides still under way
    } else if (word == "poll") {
        PanelInternals::poll(*hosted.panel);
    } else if (word == "retry") {
        PanelInternals::retry(*hosted.panel);
    } else if (word == "reset") {
        hosted.panel->resetToDefault();
    } else if (word == "resize") {
        hosted.window.resize(hosted.window.size() + QSize(50, 50));
    } else if (word == "hide" || word == "show") {
        hosted.window.setVisible(word == "show");
    } else if (word.startsWith("camera=")) {
        hosted.host.status = QByteArray::fromHex(word.mid(7).toLatin1());
    } else if (word.startsWith("length=")) {
        hosted.host.length = word.mid(7).toUInt();
    } else {
        HostedPanel::press(hosted.find<QWidget>(word));
    }
}

} // namespace

void TestPanel::initTestCase()
{
    Warnings::failOnUnannounced();
    m_factor = QGuiApplication::primaryScreen()->logicalDotsPerInch() / 96.0;
    QCOMPARE(m_factor, qgetenv("QT_FONT_DPI").toDouble() / 96.0);
    if (m_factor > 1.0) // the panel has no largest size, which cannot be scaled
        Warnings::expected = QRegularExpression("The largest allowed size is");
}

void TestPanel::behaviour_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("when");
    for (const char *when : {"before", "right after", "much later"}) {
        for (int i = 0; i < int(std::size(rows)); ++i)
            QTest::addRow("%s; shown %s", rows[i].name, when) << i << when;
    }
}

void TestPanel::behaviour()
{
    QFETCH(int, index);
    QFETCH(QString, when);
    const Row &row = rows[index];
    HostedPanel hosted;
    hosted.panel->resetToDefault(); // too early, and ignored
    QStringList script = QString(row.script).split(' ');
    script.removeAll(QString());
    hosted.host.status = QByteArray::fromHex(row.camera);
    if (script.removeAll("silent") > 0)
        hosted.host.length = 0;
    else if (script.removeAll("foreign") > 0)
        hosted.host.foreignAnswer = QByteArray(60, '\1');
    else if (script.removeAll("late") > 0)
        hosted.host.delay = slideOver;
    else if (!script.isEmpty() && script.first() == "length=1")
        play(hosted, script.takeFirst());

    if (when == "before")
        hosted.window.show();
    hosted.panel->insertWidget(hosted.container);
    if (when == "much later")
        settle(hosted.window);
    hosted.window.show();
    for (const QString &word : qAsConst(script))
        play(hosted, word);
    settle(hosted.window);
    QCOMPARE(hosted.host.takeSent().join(' '), QString(row.sent));
    QCOMPARE(shown(hosted), QString(row.panel));
    QTRY_VERIFY_WITH_TIMEOUT(hosted.window.updatesEnabled(), thawTime);
}

void TestPanel::density()
{
    HostedPanel hosted;
    hosted.insertAndShow();
    const auto scaled = [this](int length) {
        return qRound(length * m_factor);
    };
    QCOMPARE(hosted.ui()->sw_title->size(), QSize(scaled(40), scaled(20)));
    QCOMPARE(hosted.ui()->sw_title->findChild<Slider *>()->width(), scaled(20) - 4);
    QCOMPARE(hosted.ui()->frame_title->minimumHeight(), scaled(60));
    QCOMPARE(hosted.ui()->wg_half_body->maximumHeight(), scaled(85));
}

void TestPanel::timeLine()
{
    HostedPanel hosted;
    hosted.host.length = 0;
    QElapsedTimer clock;
    QVector<qint64> reads;
    const auto answer = hosted.panel->commandChannel;
    hosted.panel->commandChannel = [&](int request, const QVariant &record) {
        if (request == ChannelRequest::Extension)
            reads << clock.elapsed();
        return answer(request, record);
    };
    clock.start();
    hosted.insertAndShow();
    QCOMPARE(hosted.host.traffic, QStringList({"language", "read"}));
    QTRY_COMPARE_WITH_TIMEOUT(reads.size(), 4, 12000);
    // Coarse timers may be 5 % early; how late they are is the machine's affair.
    QVERIFY(reads.at(1) >= 950);
    QVERIFY(reads.at(2) >= 3800);
    QVERIFY(reads.at(3) - reads.at(2) >= 950);
}

void TestPanel::slowCameraDoesNotPileUp()
{
    HostedPanel hosted;
    hosted.insertAndShow();
    settle(hosted.window);
    int reads = 0;
    int nested = 0;
    const auto answer = hosted.panel->commandChannel;
    hosted.panel->commandChannel = [&](int request, const QVariant &record) {
        ++reads;
        // A window still frozen: this poll runs inside the deferred step of the one before.
        nested += int(!hosted.window.updatesEnabled());
        QThread::msleep(120);
        return answer(request, record);
    };
    PanelInternals::pollTimer(*hosted.panel)->start(50);
    QTRY_VERIFY(reads >= 5);
    QCOMPARE(nested, 0);
}

void TestPanel::language_data()
{
    QTest::addColumn<QVariant>("answer");
    QTest::addColumn<QString>("title");
    QTest::newRow("1") << QVariant(1) << "AI Tracking";
    QTest::newRow("0") << QVariant(0) << "AI跟踪";
    QTest::newRow("2") << QVariant(2) << "AI跟踪";
    QTest::newRow("text") << QVariant("English") << "AI跟踪";
    QTest::newRow("nothing") << QVariant() << "AI跟踪";
}

void TestPanel::language()
{
    HostedPanel hosted;
    hosted.host.language = *static_cast<QVariant *>(QTest::qData("answer", QMetaType::QVariant));
    hosted.panel->insertWidget(hosted.container);
    QTEST(hosted.ui()->label_title->text(), "title");
}

void TestPanel::catalogMissing()
{
    // Brings a Chinese catalog of another name, and no English one.
    class Renamed : public ControlTrackingPlugin
    {
    public:
        QString name() override { return "fallback"; }
    };
    RecordingHost host;
    QWidget container;
    auto *const panel = new Renamed;
    host.installIn(*panel);
    panel->insertWidget(&container);
    QCOMPARE(PanelInternals::ui(*panel)->label_title->text(), QStringLiteral("退路"));
}

void TestPanel::containers_data()
{
    QTest::addColumn<QLayout *>("layout");
    QTest::addColumn<int>("position");
    QTest::newRow("horizontal") << static_cast<QLayout *>(new QHBoxLayout) << 0;
    QTest::newRow("grid") << static_cast<QLayout *>(new QGridLayout) << 1;
    QTest::newRow("stacked") << static_cast<QLayout *>(new QStackedLayout) << 1;
    QTest::newRow("form") << static_cast<QLayout *>(new QFormLayout) << 1;
    QTest::newRow("none") << static_cast<QLayout *>(nullptr) << 0;
}

// In windows without a layout of their own.
void TestPanel::containers()
{
    QFETCH(QLayout *, layout);
    RecordingHost host;
    auto *const panel = new ControlTrackingPlugin;
    host.installIn(*panel);
    QWidget window;
    auto *const container = new QWidget(&window);
    if (layout) {
        container->setLayout(layout);
        layout->addWidget(new QLabel("first"));
    }
    panel->insertWidget(container);
    QTEST(container->layout()->indexOf(panel), "position");
    QCOMPARE(panel->parentWidget(), container);
    window.show();
    HostedPanel::press(PanelInternals::ui(*panel)->rb_hand);
    QVERIFY(!window.updatesEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(window.updatesEnabled(), thawTime);
}

TEST_MAIN(TestPanel)
#include "tst_panel.moc"
