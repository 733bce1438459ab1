#include "support.h"

#include <QScopedPointer>

/// The panel and its window end at every awkward moment. The sanitizers watch.
class TestLifetime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
    void panelGoes_data();
    void panelGoes();
    void windowGoes();
    void windowGoesInDeferredStep();
    void panelTakenOut();
    void secondInstance();
};

void TestLifetime::panelGoes_data()
{
    QTest::addColumn<QString>("moment");
    for (const char *moment : {"before insertWidget", "at once", "frozen", "in mid-slide",
                               "before the retry", "after the retry", "polling"})
        QTest::newRow(moment) << moment;
}

void TestLifetime::panelGoes()
{
    QFETCH(QString, moment);
    HostedPanel hosted;
    if (moment.contains("retry"))
        hosted.host.length = 0;
    if (moment != "before insertWidget")
        hosted.insertAndShow();
    if (moment == "frozen" || moment == "in mid-slide") {
        settle(hosted.window);
        HostedPanel::press(hosted.ui()->sw_title);
        HostedPanel::press(hosted.ui()->rb_hand);
    }
    if (moment == "in mid-slide")
        QTest::qWait(30);
    if (moment == "after the retry")
        PanelInternals::retry(*hosted.panel);
    if (moment == "polling") {
        PanelInternals::pollTimer(*hosted.panel)->start(10);
        QTest::qWait(50);
    }
    delete hosted.panel;
    const int crossed = hosted.host.traffic.size();
    settle(hosted.window);
    if (moment == "before the retry")
        QTest::qWait(3200); // past that, and past the moment at which polling would have started
    QCOMPARE(hosted.host.traffic.size(), crossed);
    QTRY_VERIFY_WITH_TIMEOUT(hosted.window.updatesEnabled(), thawTime);
}

void TestLifetime::windowGoes()
{
    QScopedPointer<HostedPanel> hosted(new HostedPanel);
    hosted->insertAndShow();
    HostedPanel::press(hosted->ui()->rb_hand);
    HostedPanel::press(hosted->ui()->sw_title);
    hosted.reset();
    QTest::qWait(slideOver);
}

void TestLifetime::windowGoesInDeferredStep()
{
    auto *const hosted = new HostedPanel;
    hosted->insertAndShow();
    settle(hosted->window);
    bool gone = false;
    // Due just before the deferred step, which then finds the deletion among the events it
    // processes.
    QTimer::singleShot(0, this, [&] {
        QMetaObject::invokeMethod(
            this,
            [&] {
                delete hosted;
                gone = true;
            },
            Qt::QueuedConnection);
    });
    HostedPanel::press(hosted->ui()->rb_hand);
    QTRY_VERIFY(gone);
    QTest::qWait(20);
}

// What a user then does goes on; the window that showed the panel is thawed.
void TestLifetime::panelTakenOut()
{
    HostedPanel hosted;
    hosted.insertAndShow();
    settle(hosted.window);
    hosted.host.takeSent();
    HostedPanel::press(hosted.ui()->rb_hand);
    hosted.panel->setParent(nullptr);
    hosted.panel->show();
    HostedPanel::press(hosted.ui()->rb_normal);
    PanelInternals::poll(*hosted.panel);
    settle(hosted.window);
    QCOMPARE(hosted.host.takeSent().count("notice"), 4);
    QTRY_VERIFY_WITH_TIMEOUT(hosted.window.updatesEnabled(), thawTime);
    QVERIFY(hosted.panel->updatesEnabled());
    delete hosted.panel;
}

void TestLifetime::secondInstance()
{
    for (int language : {1, 2, 1}) {
        HostedPanel hosted;
        hosted.host.language = language;
        hosted.insertAndShow();
        QCOMPARE(hosted.ui()->rb_hand->text(),
                 language == 1 ? QStringLiteral("Hand") : QStringLiteral("手部"));
        HostedPanel::press(hosted.ui()->rb_sport);
        QCOMPARE(hosted.host.traffic.last(), QString("07=2"));
    }
}

TEST_MAIN(TestLifetime)
#include "tst_lifetime.moc"
