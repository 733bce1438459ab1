#include "panelplayer.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QFormLayout>
#include <QScreen>
#include <QStackedLayout>

/// The panel in its host: density, container, style sheets. Each run has a density of its own.
class TestPanel : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void density();
    void containers_data();
    void containers();
    void styleSheets_data();
    void styleSheets();

private:
    double factor = 1.0;
};

void TestPanel::init()
{
    VirtualTime::start();
    factor = QGuiApplication::primaryScreen()->logicalDotsPerInch() / 96.0;
    QCOMPARE(factor, qgetenv("QT_FONT_DPI").toDouble() / 96.0);
    if (factor > 1.0) // the panel has no largest size, which cannot be scaled
        expectedWarnings.setPattern("The largest allowed size is");
}

void TestPanel::density()
{
    HostedPanel hosted;
    hosted.insertAndShow();
    const auto scaled = [this](int length) {
        return qRound(length * factor);
    };
    QCOMPARE(hosted.ui().sw_title->size(), QSize(scaled(40), scaled(20)));
    QCOMPARE(hosted.ui().sw_title->findChild<Slider *>()->width(), scaled(20) - 4);
    QCOMPARE(hosted.ui().frame_title->minimumHeight(), scaled(60));
    QCOMPARE(hosted.ui().wg_half_body->maximumHeight(), scaled(85));
}

template <typename Layout>
static QLayout *make()
{
    return new Layout;
}

using MakeLayout = QLayout *(*)();
Q_DECLARE_METATYPE(MakeLayout)

void TestPanel::containers_data()
{
    QTest::addColumn<MakeLayout>("makeLayout");
    QTest::addColumn<int>("position");
    QTest::newRow("horizontal") << MakeLayout(make<QHBoxLayout>) << 0;
    QTest::newRow("grid") << MakeLayout(make<QGridLayout>) << 1;
    QTest::newRow("stacked") << MakeLayout(make<QStackedLayout>) << 1;
    QTest::newRow("form") << MakeLayout(make<QFormLayout>) << 1;
    QTest::newRow("none") << MakeLayout(nullptr) << 0;
}

// In windows without a layout of their own.
void TestPanel::containers()
{
    QFETCH(MakeLayout, makeLayout);
    RecordingHost host;
    auto *const panel = new ControlTrackingPlugin;
    host.installIn(*panel);
    QWidget window;
    auto *const container = new QWidget(&window);
    if (makeLayout) {
        container->setLayout(makeLayout());
        container->layout()->addWidget(new QLabel("first"));
    }
    panel->insertWidget(container);
    QTEST(container->layout()->indexOf(panel), "position");
    QCOMPARE(panel->parentWidget(), container);
    if (!makeLayout)
        QVERIFY(container->layout()->contentsMargins().isNull());
    window.show();
    HostedPanel::press(*PanelInternals::ui(*panel).rb_hand);
    QVERIFY(!window.updatesEnabled());
    VirtualTime::catchUp();
    QVERIFY(window.updatesEnabled());
}

void TestPanel::styleSheets_data()
{
    QTest::addColumn<QString>("styleSheet");
    QTest::addColumn<QString>("shown"); // before, at or after set-up
    const std::pair<const char *, const char *> sheets[] = {
        {"least size", "QWidget { min-height: 24px; }"},
        {"largest size", "QWidget { max-width: 30px; }"},
        {"fixed size", "SwitchButton { min-width: 60px; max-width: 60px; height: 30px; }"},
        {"one by name", "#sw_picture_mode { min-height: 30px; max-height: 30px; }"},
        {"all", "* { min-width: 26px; min-height: 26px; max-height: 90px; }"}};
    for (const auto &[name, sheet] : sheets) {
        QTest::addRow("%s, shown before", name) << sheet << "show,wait=50,insert";
        QTest::addRow("%s, shown at once", name) << sheet << "insert,show";
        QTest::addRow("%s, shown later", name) << sheet << "insert,wait=500,show";
    }
}

// Sizes that come with the first show must not cost a step of a reset, nor a press.
void TestPanel::styleSheets()
{
    QFETCH(QString, styleSheet);
    QFETCH(QString, shown);
    qApp->setStyleSheet(styleSheet);
    const QStringList begin{"camera=0000000101", "obey"};
    const QString later("wait=20,sw_title,wait=250,sw_picture_mode,wait=20,sw_title,wait=1000");
    for (const char *first : {"wait=500,reset", "sw_title"}) {
        PanelPlayer player;
        const QStringList steps = (shown + ',' + first + ',' + later).split(',');
        QCOMPARE(player.play(begin + steps), QString());
    }
    qApp->setStyleSheet(QString());
}

TEST_MAIN(TestPanel)
#include "tst_panel.moc"
