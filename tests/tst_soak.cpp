#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <malloc.h>

using namespace std::chrono_literals;

class TestSoak : public Test
{
    Q_OBJECT

private Q_SLOTS:
    // A day of a panel that is hidden except for two minutes of each hour, in which the user works
    // with it. Whatever piles up takes memory.
    void day()
    {
#ifdef __SANITIZE_ADDRESS__
        QSKIP("The sanitizer's allocator has no statistics.");
#endif
        VirtualTime::start();
        HostedPanel hosted;
        hosted.panel->insertWidget(hosted.container);
        std::size_t before = 0;
        for (int hour = 0; hour < 24; ++hour) {
            if (hour == 2) // caches and pools are full
                before = mallinfo2().uordblks;
            hosted.window.show();
            for (int round = 0; round < 10; ++round) {
                for (const char *const control :
                     {"sw_title", "sw_title", "Space:sw_picture_mode", "wg_full_body", "rb_hand",
                      "frame_title", "Space:frame_title", "rb_normal", "rb_sport",
                      "sw_picture_mode", "rb_normal_mode"}) {
                    hosted.press(control);
                    VirtualTime::advance(1s);
                }
            }
            hosted.window.hide();
            QVERIFY(hosted.host.takeSent().size() > 100);
            for (int second = 0; second < 3480; ++second) {
                VirtualTime::now += 1s;
                VirtualTime::catchUp();
            }
            QVERIFY(hosted.host.traffic.count("read") > 3000);
            QCOMPARE(hosted.host.takeSent(), QStringList());
        }
        const auto growth = qint64(mallinfo2().uordblks) - qint64(before);
        QVERIFY2(growth < 1024, qPrintable(QString::number(growth)));
    }
};

TEST_MAIN(TestSoak)
#include "tst_soak.moc"
