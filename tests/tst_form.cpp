#include "support.h"

#include <QButtonGroup>
#include <QResource>
#include <QTranslator>

/// The form held against its design, row by row, and its texts.
class TestForm : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void widgets_data();
    void widgets();
    void layouts_data();
    void layouts();
    void spacersAndGroups();
    void texts_data();
    void texts();
    void bundle();

private:
    QWidget m_root;
    Ui_root m_form;
};

namespace {

constexpr int Max = QWIDGETSIZE_MAX;

// clang-format off
const char *const sheetA = "QPushButton {\ncolor:#99A1A1A9;\nfont:7.5pt;\nborder: none;\nbackground:#282B30;\nborder-radius:10px;\ntext-align: center;\npadding: 4px 10px 4px 10px;\n}\n\nQPushButton:hover, QPushButton:checked{\ncolor:white;\nbackground:#3A3F46;\n}";
const char *const sheetB = "QLabel {\nbackground:transparent;\ncolor:#A1A1A9;\nfont:10pt;\n}";
const char *const sheetC = "QLabel {\nbackground: transparent;\ncolor: #A1A1A9;\nfont:10pt;\n}\n\nQPushButton {\nborder:none;\nbackground:transparent;\n}";
const char *const sheetD = "QPushButton {\nimage: url(:/UI/img_tracking_half.svg);\n}\n\nQPushButton:checked {\nimage: url(:/UI/img_tracking_half_select.svg);\n}";
const char *const sheetE = "QPushButton {\nimage: url(:/UI/img_tracking_full.svg);\n}\n\nQPushButton:checked {\nimage: url(:/UI/img_tracking_full_select.svg);\n}";
const char *const sheetF = "QPushButton {\nimage: url(:/UI/img_tracking_multi.svg);\n}\n\nQPushButton:checked {\nimage: url(:/UI/img_tracking_multi_select.svg);\n}";
const char *const sheetG = "QLabel {\nbackground:transparent;\ncolor:#A1A1A9;\n}";
const char *const sheetH = "QPushButton {\nbackground: none;\nimage: url(:/UI/icon_limitarea.svg);\n}\n\nQPushButton:checked {\nimage: url(:/UI/icon_limitarea_checked.svg);\n}";
const char *const sheetI = "QPushButton {\nbackground: transparent;\nborder: none;\n}\n\nQMenu {\nbackground: black;\n}\nQMenu::item {\ncolor: gray;\n}\nQMenu::item:selected {\ncolor: white;\n}\n";
const char *const sheetJ = "QLabel {\ncolor:#99CECEDA;\nfont: 9pt;\nbackground: #282B30;\nborder-radius:13px;\nmargin: 4px;\npadding: 5px;\n}\n";
const char *const sheetK = "QLabel {\ncolor:#99CECEDA;\nfont: 9pt;\nbackground: #282B30;\nborder-radius:13px;\nmargin: 4px;\npadding: 5px;\n}\n";
const char *const sheetL = "QLabel {\ncolor:#99CECEDA;\nfont: 9pt;\nbackground: #FF282B30;\nborder-radius:13px;\nmargin: 4px;\npadding: 5px;\n}\n";
const char *const sheetM = "QLabel {\ncolor:#99CECEDA;\nfont: 9pt;\nbackground: #282B30;\nborder-radius:13px;\nmargin: 4px;\npadding: 5px;\n}\n\n";
const char *const sheetN = "QPushButton {\nbackground: #282B30;\nborder-radius:5px;\n}";

// Flags: flat = no frame, raised; centre, top = alignment; menu = context menu of actions.
const struct Widget
{
    const char *name, *className, *parent, *place;
    QSize min, max;
    const char *policy, *flags, *sheet;
} widgetRows[] = {
    {"line", "QFrame", "root", "verticalLayout 0", {0, 0}, {Max, 1}, "", "", "QFrame {\nbackground:black;\n}"},
    {"frame_title", "QPressFrame", "root", "verticalLayout 1", {0, 60}, {Max, 60}, "", "flat", ""},
    {"label_title", "QLabel", "frame_title", "horizontalLayout 0", {0, 0}, {Max, Max}, "", "", "background:transparent;"},
    {"sw_title", "SwitchButton", "frame_title", "horizontalLayout 2", {40, 20}, {40, 20}, "", "", ""},
    {"frame_spliter", "QFrame", "root", "verticalLayout 2", {0, 0}, {Max, Max}, "Preferred/Preferred", "flat", ""},
    {"frame_tracking_type", "QFrame", "frame_spliter", "vl_spilter 0", {0, 40}, {Max, Max}, "", "flat", sheetA},
    {"label_tracking_type", "QLabel", "frame_tracking_type", "hl_type 0", {0, 0}, {Max, Max}, "Expanding/Preferred", "", sheetB},
    {"rb_normal", "QPushButton", "frame_tracking_type", "hl_type 1", {55, 20}, {Max, Max}, "Preferred/Fixed", "checkable checked exclusive", ""},
    {"rb_hand", "QPushButton", "frame_tracking_type", "hl_type 2", {55, 20}, {Max, Max}, "Preferred/Fixed", "checkable exclusive", ""},
    {"rb_whiteboard", "QPushButton", "frame_tracking_type", "hl_type 3", {55, 20}, {Max, Max}, "Preferred/Fixed", "checkable exclusive", ""},
    {"frame_tracking_mode", "QFrame", "frame_spliter", "vl_spilter 1", {0, 40}, {Max, Max}, "", "flat", sheetA},
    {"label_tracking_mode", "QLabel", "frame_tracking_mode", "hl_mode 0", {0, 0}, {Max, Max}, "Expanding/Preferred", "", sheetB},
    {"rb_normal_mode", "QPushButton", "frame_tracking_mode", "hl_mode 1", {55, 20}, {Max, Max}, "Preferred/Fixed", "checkable checked exclusive", ""},
    {"rb_sport", "QPushButton", "frame_tracking_mode", "hl_mode 2", {55, 20}, {Max, Max}, "Preferred/Fixed", "checkable exclusive", ""},
    {"frame_picture_title", "QFrame", "frame_spliter", "vl_spilter 2", {0, 40}, {Max, Max}, "", "flat", ""},
    {"label_picture_mode", "QLabel", "frame_picture_title", "horizontalLayout_2 0", {0, 40}, {Max, Max}, "", "", sheetB},
    {"sw_picture_mode", "SwitchButton", "frame_picture_title", "horizontalLayout_2 1", {40, 20}, {40, 20}, "", "", ""},
    {"frame_picture_mode", "QFrame", "frame_spliter", "vl_spilter 3", {0, 0}, {Max, Max}, "", "flat", sheetC},
    {"frame_half_body", "QFrame", "frame_picture_mode", "hl_picture 0", {0, 0}, {Max, Max}, "", "flat", ""},
    {"wg_half_body", "QPushButton", "frame_half_body", "verticalLayout_3 0", {0, 85}, {Max, 85}, "Preferred/Preferred", "checkable", sheetD},
    {"label_half_body", "QLabel", "frame_half_body", "verticalLayout_3 1", {0, 0}, {Max, Max}, "", "top", ""},
    {"frame_full_body", "QFrame", "frame_picture_mode", "hl_picture 1", {0, 0}, {Max, Max}, "", "flat", ""},
    {"wg_full_body", "QPushButton", "frame_full_body", "verticalLayout_2 0", {0, 85}, {Max, 85}, "Preferred/Preferred", "checkable", sheetE},
    {"label_full_body", "QLabel", "frame_full_body", "verticalLayout_2 1", {0, 0}, {Max, Max}, "", "top", ""},
    {"frame_multi_body", "QFrame", "frame_picture_mode", "hl_picture 2", {0, 0}, {Max, Max}, "", "flat", ""},
    {"wg_multi_body", "QPushButton", "frame_multi_body", "verticalLayout_4 0", {0, 85}, {Max, 85}, "Preferred/Preferred", "checkable", sheetF},
    {"label_multi_body", "QLabel", "frame_multi_body", "verticalLayout_4 1", {0, 0}, {Max, Max}, "", "top", ""},
    {"frame_limit_title", "QFrame", "frame_spliter", "vl_spilter 4", {0, 40}, {Max, Max}, "", "flat", ""},
    {"label_limit_title", "QLabel", "frame_limit_title", "horizontalLayout_3 0", {0, 0}, {Max, Max}, "", "", sheetG},
    {"pb_limit_setting", "QPushButton", "frame_limit_title", "horizontalLayout_3 1", {16, 16}, {16, 16}, "Preferred/Preferred", "checkable", sheetH},
    {"sw_limit", "SwitchButton", "frame_limit_title", "horizontalLayout_3 2", {40, 20}, {40, 20}, "", "", ""},
    {"frame_limit_setting_spliter", "QFrame", "frame_spliter", "vl_spilter 5", {0, 200}, {Max, Max}, "Preferred/Preferred", "flat", sheetI},
    {"label_lb", "BgLineLabel", "frame_limit_setting_spliter", "gridLayout 2,0 1x1", {0, 0}, {Max, Max}, "", "", ""},
    {"label_rt", "BgLineLabel", "frame_limit_setting_spliter", "gridLayout 0,2 1x1", {0, 0}, {Max, Max}, "", "", ""},
    {"label_unlimit_title", "QLabel", "frame_limit_setting_spliter", "gridLayout 4,0 1x3", {0, 40}, {Max, 40}, "", "", "QLabel {\ncolor:#A1A1A9;\n}"},
    {"label_lt", "BgLineLabel", "frame_limit_setting_spliter", "gridLayout 0,0 1x1", {0, 0}, {Max, Max}, "", "", ""},
    {"label_rb", "BgLineLabel", "frame_limit_setting_spliter", "gridLayout 2,2 1x1", {0, 0}, {Max, Max}, "", "", ""},
    {"label_r", "BgLineLabel", "frame_limit_setting_spliter", "gridLayout 1,2 1x1", {0, 0}, {Max, Max}, "", "centre menu", sheetJ},
    {"label_b", "BgLineLabel", "frame_limit_setting_spliter", "gridLayout 2,1 1x1", {0, 0}, {Max, Max}, "", "centre menu", sheetK},
    {"label_l", "BgLineLabel", "frame_limit_setting_spliter", "gridLayout 1,0 1x1", {0, 0}, {Max, Max}, "", "centre menu", sheetL},
    {"label_t", "BgLineLabel", "frame_limit_setting_spliter", "gridLayout 0,1 1x1", {0, 0}, {Max, Max}, "", "centre menu", sheetM},
    {"frame_unlimit", "QFrame", "frame_limit_setting_spliter", "gridLayout 5,0 1x3", {0, 0}, {Max, Max}, "", "flat", ""},
    {"pb_add", "QPushButton", "frame_unlimit", "hl_unlimit 0", {91, 35}, {91, Max}, "Preferred/Preferred", "", sheetN},
};

// Spacing and margins (left, top, right, bottom) of -1 are the style's.
const struct Layout
{
    const char *name, *className, *on;
    int spacing;
    int margins[4];
    const char *items;
} layoutRows[] = {
    {"verticalLayout", "QVBoxLayout", "root", 0, {0, 0, 0, 0}, "line frame_title frame_spliter"},
    {"horizontalLayout", "QHBoxLayout", "frame_title", 16, {39, 0, 44, 0}, "label_title horizontalSpacer sw_title"},
    {"vl_spilter", "QVBoxLayout", "frame_spliter", 0, {39, 0, 39, 0}, "frame_tracking_type frame_tracking_mode frame_picture_title frame_picture_mode frame_limit_title frame_limit_setting_spliter"},
    {"hl_type", "QHBoxLayout", "frame_tracking_type", 10, {0, 0, 6, 0}, "label_tracking_type rb_normal rb_hand rb_whiteboard"},
    {"hl_mode", "QHBoxLayout", "frame_tracking_mode", 10, {0, 0, 6, 0}, "label_tracking_mode rb_normal_mode rb_sport"},
    {"horizontalLayout_2", "QHBoxLayout", "frame_picture_title", -1, {0, 0, 0, 0}, "label_picture_mode sw_picture_mode"},
    {"hl_picture", "QHBoxLayout", "frame_picture_mode", 11, {0, 0, 0, 0}, "frame_half_body frame_full_body frame_multi_body"},
    {"verticalLayout_3", "QVBoxLayout", "frame_half_body", 9, {0, 0, 0, -1}, "wg_half_body label_half_body"},
    {"verticalLayout_2", "QVBoxLayout", "frame_full_body", 9, {0, 0, 0, 9}, "wg_full_body label_full_body"},
    {"verticalLayout_4", "QVBoxLayout", "frame_multi_body", 9, {0, 0, 0, -1}, "wg_multi_body label_multi_body"},
    {"horizontalLayout_3", "QHBoxLayout", "frame_limit_title", 22, {0, 0, 0, 0}, "label_limit_title pb_limit_setting sw_limit"},
    {"gridLayout", "QGridLayout", "frame_limit_setting_spliter", 0, {0, 0, 0, 20}, "label_lb label_rt label_unlimit_title label_lt label_rb label_r label_b label_l label_t frame_unlimit"},
    {"hl_unlimit", "QHBoxLayout", "frame_unlimit", 9, {0, 0, 0, 0}, "pb_add horizontalSpacer_2"},
};

const struct Text { const char *widget, *key, *english, *chinese; } textRows[] = {
    {"label_title", "title", "AI Tracking", "AI跟踪"},
    {"label_tracking_type", "tracking_type", "Tracking Type", "AI跟踪模式"},
    {"rb_normal", "normal", "Basic", "常规"},
    {"rb_hand", "hand", "Hand", "手部"},
    {"rb_whiteboard", "whiteboard", "Board", "白板"},
    {"label_tracking_mode", "tracking_mode", "Tracking Mode", "AI跟踪场景"},
    {"rb_normal_mode", "normal_mode", "Standard", "标准"},
    {"rb_sport", "sport", "Sport", "运动"},
    {"label_picture_mode", "picture_mode", "Auto Composition", "自动构图"},
    {"label_half_body", "half_body", "Half Body", "半身"},
    {"label_full_body", "full_body", "Full Body", "全身"},
    {"label_multi_body", "multi_body", "Bodies", "多人构图"},
    {"label_limit_title", "areaLimit", "Area Tracking", "区域跟踪"},
    {"label_unlimit_title", "unLimitArea", "Non-tracking Area", "非跟踪区域"},
    {"label_r", "100°", "100°", "100°"},
    {"label_b", "30°", "30°", "30°"},
    {"label_l", "-100°", "-100°", "-100°"},
    {"label_t", "-30°", "-30°", "-30°"},
};
// clang-format on

QString textOf(QWidget *widget)
{
    return widget->property("text").toString();
}

QString policyName(QSizePolicy::Policy policy)
{
    return QString::fromLatin1(QMetaEnum::fromType<QSizePolicy::Policy>().valueToKey(policy));
}

} // namespace

void TestForm::initTestCase()
{
    Warnings::failOnUnannounced();
    m_form.setupUi(&m_root);
    QCOMPARE(m_root.objectName(), QStringLiteral("root"));
    QCOMPARE(m_root.size(), QSize(374, 537));
}

void TestForm::widgets_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(widgetRows)); ++i)
        QTest::newRow(widgetRows[i].name) << i;
    // Nothing but these, and the knobs of the switches.
    QCOMPARE(m_root.findChildren<QWidget *>().size(), int(std::size(widgetRows)) + 3);
}

void TestForm::widgets()
{
    QFETCH(int, index);
    const Widget *const row = &widgetRows[index];
    auto *const widget = m_root.findChild<QWidget *>(row->name);
    QVERIFY(widget);
    QCOMPARE(widget->metaObject()->className(), row->className);
    QCOMPARE(widget->parent()->objectName(), QString(row->parent));
    QCOMPARE(widget->minimumSize(), row->min);
    QCOMPARE(widget->maximumSize(), row->max);
    QCOMPARE(widget->styleSheet(), QString(row->sheet));

    const QStringList place = QString(row->place).split(' ');
    auto *const layout = m_root.findChild<QLayout *>(place.at(0));
    QVERIFY(layout);
    const int position = layout->indexOf(widget);
    QVERIFY(!layout->itemAt(position)->alignment());
    if (auto *const grid = qobject_cast<QGridLayout *>(layout)) {
        int r, c, rows, columns;
        grid->getItemPosition(position, &r, &c, &rows, &columns);
        QCOMPARE(QString("%1,%2 %3x%4").arg(r).arg(c).arg(rows).arg(columns),
                 place.mid(1).join(' '));
    } else {
        QCOMPARE(position, place.at(1).toInt());
        QCOMPARE(qobject_cast<QBoxLayout *>(layout)->stretch(position), 0);
    }

    const QSizePolicy policy = widget->sizePolicy();
    QCOMPARE(policy.horizontalStretch() + policy.verticalStretch(), 0);
    if (*row->policy) {
        QCOMPARE(policyName(policy.horizontalPolicy()) + '/' + policyName(policy.verticalPolicy()),
                 QString(row->policy));
    }

    QStringList flags;
    if (auto *const frame = qobject_cast<QFrame *>(widget)) {
        if (frame->frameShape() == QFrame::NoFrame && frame->frameShadow() == QFrame::Raised)
            flags << "flat";
    }
    if (auto *const button = qobject_cast<QAbstractButton *>(widget)) {
        if (button->isCheckable())
            flags << "checkable";
        if (button->isChecked())
            flags << "checked";
        if (button->autoExclusive())
            flags << "exclusive";
    }
    if (auto *const label = qobject_cast<QLabel *>(widget)) {
        if (label->alignment() == (Qt::AlignHCenter | Qt::AlignTop))
            flags << "top";
        if (label->alignment() == Qt::AlignCenter)
            flags << "centre";
    }
    if (widget->contextMenuPolicy() == Qt::ActionsContextMenu)
        flags << "menu";
    QCOMPARE(flags.join(' '), QString(row->flags));
}

void TestForm::layouts_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(layoutRows)); ++i)
        QTest::newRow(layoutRows[i].name) << i;
}

void TestForm::layouts()
{
    QFETCH(int, index);
    const Layout *const row = &layoutRows[index];
    auto *const layout = m_root.findChild<QLayout *>(row->name);
    QVERIFY(layout);
    QCOMPARE(layout->metaObject()->className(), row->className);
    QCOMPARE(layout->parentWidget()->objectName(), QString(row->on));

    QWidget window;
    const QHBoxLayout untouched(new QWidget(&window));
    const int spacing = layout->property("spacing").toInt();
    QCOMPARE(spacing, row->spacing < 0 ? untouched.spacing() : row->spacing);
    const QMargins is = layout->contentsMargins();
    const int margins[] = {is.left(), is.top(), is.right(), is.bottom()};
    for (int i = 0; i < 3; ++i)
        QCOMPARE(margins[i], row->margins[i]);
    QCOMPARE(margins[3],
             row->margins[3] < 0 ? untouched.contentsMargins().bottom() : row->margins[3]);

    QStringList items;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *const item = layout->itemAt(i);
        items << (item->widget()                      ? item->widget()->objectName()
                  : item == m_form.horizontalSpacer   ? "horizontalSpacer"
                  : item == m_form.horizontalSpacer_2 ? "horizontalSpacer_2"
                                                      : "?");
    }
    QCOMPARE(items.join(' '), QString(row->items));
}

void TestForm::spacersAndGroups()
{
    QCOMPARE(m_form.horizontalSpacer->sizeHint(), QSize(211, 20));
    QCOMPARE(m_form.horizontalSpacer_2->sizeHint(), QSize(188, 20));
    for (const QSpacerItem *spacer : {m_form.horizontalSpacer, m_form.horizontalSpacer_2}) {
        QCOMPARE(spacer->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
        QCOMPARE(spacer->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
    }
    for (int column = 0; column < 3; ++column)
        QCOMPARE(m_form.gridLayout->columnStretch(column), 1);
    QCOMPARE(m_form.line->frameShape(), QFrame::HLine);
    QCOMPARE(m_form.line->frameShadow(), QFrame::Sunken);
    QCOMPARE(m_form.line->lineWidth(), 2);

    using Buttons = QList<QAbstractButton *>;
    QCOMPARE(m_form.buttonGroup->buttons(),
             Buttons({m_form.rb_normal, m_form.rb_hand, m_form.rb_whiteboard}));
    QCOMPARE(m_form.buttonGroup_mode->buttons(), Buttons({m_form.rb_normal_mode, m_form.rb_sport}));
    QCOMPARE(m_form.buttonGroup_picture_mdoe->buttons(),
             Buttons({m_form.wg_half_body, m_form.wg_full_body, m_form.wg_multi_body}));
    for (auto *group :
         {m_form.buttonGroup, m_form.buttonGroup_mode, m_form.buttonGroup_picture_mdoe}) {
        QVERIFY(group->exclusive());
        QCOMPARE(group->parent(), &m_root);
        QCOMPARE(group->id(group->buttons().first()), -2);
    }
}

void TestForm::texts_data()
{
    QTest::addColumn<QString>("catalog");
    QTest::addColumn<int>("language");
    QTest::newRow("none: the keys") << QString() << 0;
    QTest::newRow("English") << QStringLiteral(":/Plugins/m24_tracking_en_US.qm") << 1;
    QTest::newRow("Chinese") << QStringLiteral(":/Plugins/m24_tracking_zh_CN.qm") << 2;
}

void TestForm::texts()
{
    QFETCH(QString, catalog);
    QFETCH(int, language);
    QTranslator translator;
    if (language > 0) {
        QVERIFY(translator.load(catalog));
        QCoreApplication::installTranslator(&translator);
    }
    QWidget root;
    Ui_root form;
    form.setupUi(&root);
    QStringList named;
    for (const Text &row : textRows) {
        const QString texts[] = {row.key, row.english, row.chinese};
        QCOMPARE(textOf(root.findChild<QWidget *>(row.widget)), texts[language]);
        named << row.widget;
    }
    const auto all = root.findChildren<QWidget *>();
    for (QWidget *widget : all)
        QVERIFY2(named.contains(widget->objectName()) || textOf(widget).isEmpty(),
                 qPrintable(widget->objectName()));
}

void TestForm::bundle()
{
    for (const QString path : {":/Plugins/m24_tracking_en_US.qm", ":/UI/icon_limitarea.svg"})
        QVERIFY(!QResource(path).isCompressed());
    // One entry that no text looks up, beside those of the form.
    QTranslator english;
    QVERIFY(english.load(QStringLiteral(":/Plugins/m24_tracking_en_US.qm")));
    QCOMPARE(english.translate("ControlTrackingPlugin", "update"), QStringLiteral("Update"));
}

TEST_MAIN(TestForm)
#include "tst_form.moc"
