#include "hostedpanel.h"
#include "testmain.h"
#include "virtualtime.h"

#include <QButtonGroup>
#include <QFile>
#include <QResource>

/// The form and its texts, as far as the code and the user depend on them.
class TestForm : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void groups();
    void languages_data();
    void languages();
    void texts_data();
    void texts();
    void bundle();
};

// A star before what is checked at first.
void TestForm::groups()
{
    QWidget root;
    Ui_root().setupUi(&root);
    QStringList words;
    const auto groups = root.findChildren<QButtonGroup *>();
    for (const auto *group : groups) {
        words << group->objectName() + (group->exclusive() ? ":" : "");
        const auto buttons = group->buttons();
        for (const auto *button : buttons)
            words << (button->isChecked() ? "*" : "") + button->objectName();
    }
    QCOMPARE(words.join(' '), QString("buttonGroup: *rb_normal rb_hand rb_whiteboard "
                                      "buttonGroup_mode: *rb_normal_mode rb_sport "
                                      "buttonGroup_picture_mdoe: wg_half_body wg_full_body "
                                      "wg_multi_body"));
}

// What a host may answer to the question for its language.
void TestForm::languages_data()
{
    QTest::addColumn<QVariant>("answer");
    QTest::addColumn<QString>("title");
    const QString english("AI Tracking");
    const QString chinese("AI跟踪");
    QTest::newRow("1") << QVariant(1) << english;
    QTest::newRow("0") << QVariant(0) << chinese;
    QTest::newRow("2") << QVariant(2) << chinese;
    QTest::newRow("a digit") << QVariant("1") << english;
    QTest::newRow("bytes") << QVariant(QByteArray("1")) << english;
    QTest::newRow("a word") << QVariant("en") << chinese;
    QTest::newRow("a list") << QVariant(QVariantList{1}) << chinese;
    QTest::newRow("a record") << QVariant::fromValue(ExtensionUnit()) << chinese;
    QTest::newRow("nothing") << QVariant() << chinese;
}

void TestForm::languages()
{
    QFETCH(QVariant, answer);
    HostedPanel hosted;
    hosted.host.language = answer;
    hosted.panel->insertWidget(hosted.container);
    QTEST(hosted.ui().label_title->text(), "title");
    QCOMPARE(hosted.host.traffic.count("language"), 1);
}

void TestForm::texts_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("texts");
    QTest::newRow("English")
        << 1
        << "AI Tracking|Tracking Type|Basic|Hand|Board|Tracking Mode|Standard|Sport|"
           "Auto Composition|Half Body|Full Body|Bodies|Area Tracking|"
           "Non-tracking Area|100°|30°|-100°|-30°|Update";
    QTest::newRow("Chinese")
        << 0
        << "AI跟踪|AI跟踪模式|常规|手部|白板|AI跟踪场景|标准|运动|自动构图|半身|全身|"
           "多人构图|区域跟踪|非跟踪区域|100°|30°|-100°|-30°|更新";
}

// In the order of the form, every text that there is; and with every row in sight, none is cut off.
void TestForm::texts()
{
    VirtualTime::start();
    QFETCH(int, language);
    HostedPanel hosted;
    hosted.host.language = language;
    hosted.insertAndShow();
    hosted.panel->setFixedWidth(374); // the width that it is made for
    const auto widgets = hosted.panel->findChildren<QWidget *>();
    for (QWidget *widget : widgets)
        widget->show();
    VirtualTime::advance(std::chrono::milliseconds(200)); // the deferred layout, and slides
    QStringList texts;
    for (const QWidget *widget : widgets) {
        const QString text = widget->property("text").toString();
        if (text.isEmpty())
            continue;
        texts << text;
        const QSize wanted = widget->sizeHint();
        QVERIFY2(wanted == wanted.boundedTo(widget->size()), qPrintable(text));
    }
    // One that no text of the form looks up.
    texts << QCoreApplication::translate("ControlTrackingPlugin", "update");
    QTEST(texts.join('|'), "texts");
}

void TestForm::bundle()
{
    for (const char *path : {"Plugins/m24_tracking_en_US.qm", "Plugins/m24_tracking_zh_CN.qm",
                             "UI/icon_limitarea.svg", "UI/icon_limitarea_checked.svg"}) {
        const QResource file(QString(":/") + path);
        QVERIFY2(file.isValid() && !file.isCompressed(), path);
    }
    // Each picture that a style sheet names is another one, and is there; the host brings some.
    QWidget root;
    Ui_root().setupUi(&root);
    QStringList pictures;
    const auto widgets = root.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const auto parts = widget->styleSheet().split("url(").mid(1);
        for (const QString &part : parts)
            pictures << part.section(')', 0, 0);
    }
    QCOMPARE(pictures.removeDuplicates(), 0);
    for (const QString &picture : qAsConst(pictures))
        QVERIFY2(QFile::exists(picture), qPrintable(picture));
}

TEST_MAIN(TestForm)
#include "tst_form.moc"
