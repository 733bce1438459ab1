#include "support.h"
#include "virtualtime.h"

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
    void language_data();
    void language();
    void catalogMissing();
    void containers_data();
    void containers();

private:
    double m_factor = 1.0;
};

namespace {

using namespace std::chrono_literals;

const struct Row
{
    const char *name;
    const char *camera; // its status block when the panel is built
    const char *script; // what is pressed then; or wait, or reset
    const char *sent;   // every command and notice from set-up on
    const char *panel;  // what it shows in the end
} rows[] = {
    {"set-up mirrors the camera, and echoes the composition alone", "0001000202", "", "13=2",
     "on composed normal sport full |spliter |picture_title |picture_mode"},
    {"tracking", "0001000100", "sw_title wait sw_title", "04=0 notice 04=1",
     "on plain normal normal |spliter |picture_title"},
    {"type", "0001000101", "rb_hand wait rb_whiteboard",
     "13=1 10=0 notice 10=1 notice 10=1 notice 10=2 notice",
     "on composed whiteboard normal half |spliter"},
    {"mode", "0001000100", "rb_sport", "07=1 07=2",
     "on plain normal sport |spliter |picture_title"},
    {"composition, for the first time", "0001000100", "sw_picture_mode", "13=1 13=1",
     "on composed normal normal half |spliter |picture_title |picture_mode"},
    {"composition, off and on", "0001000103", "sw_picture_mode wait sw_picture_mode",
     "13=3 13=0 notice 13=3",
     "on composed normal normal multi |spliter |picture_title |picture_mode"},
    {"kind of composition", "0001000101", "wg_full_body", "13=1 13=1 13=2",
     "on composed normal normal full |spliter |picture_title |picture_mode"},
    {"title row", "0001000101", "frame_title wait frame_title wait frame_title", "13=1",
     "on composed normal normal half"},
    {"reset", "0000020203", "reset", "13=3 10=2 notice 10=0 notice 07=2 07=1 04=1 13=0 notice",
     "on plain normal normal multi |spliter |picture_title"},
};

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
    for (int i = 0; i < int(std::size(rows)); ++i)
        QTest::newRow(rows[i].name) << i;
}

void TestPanel::behaviour()
{
    QFETCH(int, index);
    const Row &row = rows[index];
    HostedPanel hosted;
    hosted.panel->resetToDefault(); // too early, and ignored
    hosted.host.status = QByteArray::fromHex(row.camera);
    hosted.insertAndShow();
    VirtualTime::advance(250ms);
    for (const QString &word : QString(row.script).split(' ')) {
        if (word == "wait")
            VirtualTime::advance(250ms);
        else if (word == "reset")
            hosted.panel->resetToDefault();
        else if (!word.isEmpty())
            QVERIFY2(hosted.press(word), qPrintable(word));
    }
    VirtualTime::advance(250ms);
    QCOMPARE(hosted.host.takeSent().join(' '), QString(row.sent));
    QCOMPARE(hosted.shown(), QString(row.panel));
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

void TestPanel::language_data()
{
    QTest::addColumn<QVariant>("answer");
    QTest::addColumn<QString>("title");
    QTest::newRow("1") << QVariant(1) << "AI Tracking";
    QTest::newRow("0") << QVariant(0) << "AI跟踪";
    QTest::newRow("2") << QVariant(2) << "AI跟踪";
    QTest::newRow("text") << QVariant("English") << "AI跟踪";
    QTest::newRow("nothing") << QVariant() << "AI跟踪";
    QTest::newRow("1 again, for a second instance") << QVariant(1) << "AI Tracking";
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
    VirtualTime::catchUp();
    QVERIFY(window.updatesEnabled());
}

TEST_MAIN(TestPanel)
#include "tst_panel.moc"
