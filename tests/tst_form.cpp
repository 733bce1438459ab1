#include "support.h"

#include <QButtonGroup>
#include <QFile>
#include <QResource>

/// The form and its texts, as far as the code and the user depend on them.
class TestForm : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
    void groups();
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

void TestForm::texts_data()
{
    QTest::addColumn<QString>("texts");
    QTest::newRow("1") << "AI Tracking|Tracking Type|Basic|Hand|Board|Tracking Mode|Standard|Sport|"
                          "Auto Composition|Half Body|Full Body|Bodies|Area Tracking|"
                          "Non-tracking Area|100°|30°|-100°|-30°|Update";
    QTest::newRow("2")
        << "AI跟踪|AI跟踪模式|常规|手部|白板|AI跟踪场景|标准|运动|自动构图|半身|全身|"
           "多人构图|区域跟踪|非跟踪区域|100°|30°|-100°|-30°|更新";
}

// In the order of the form, every text that there is; and with every row in sight, none is cut off.
void TestForm::texts()
{
    HostedPanel hosted;
    hosted.host.language = QByteArray(QTest::currentDataTag()).toInt();
    hosted.insertAndShow();
    hosted.panel->setFixedWidth(374); // the width that it is made for
    const auto widgets = hosted.panel->findChildren<QWidget *>();
    for (QWidget *widget : widgets)
        widget->show();
    settle(hosted.window);
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
