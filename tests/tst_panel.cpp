#include "support.h"
#include "virtualtime.h"

#include <QFormLayout>
#include <QScreen>
#include <QStackedLayout>

/// The panel in its host: density, container. Each run has a density of its own.
class TestPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void density();
    void containers_data();
    void containers();

private:
    double m_factor = 1.0;
};

void TestPanel::initTestCase()
{
    Warnings::failOnUnannounced();
    m_factor = QGuiApplication::primaryScreen()->logicalDotsPerInch() / 96.0;
    QCOMPARE(m_factor, qgetenv("QT_FONT_DPI").toDouble() / 96.0);
    if (m_factor > 1.0) // the panel has no largest size, which cannot be scaled
        Warnings::expected = QRegularExpression("The largest allowed size is");
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
