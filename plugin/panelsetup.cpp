// Set-up of the panel, and the status reads that keep it in step with the camera.

#include "accessibility.h"
#include "choices.h"
#include "controltrackingplugin.h"
#include "focusframe.h"
#include "objectscaling.h"
#include "panelplacement.h"

#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QSignalBlocker>
#include <QTranslator>
#include <QVector>

#include <chrono>

namespace {

using namespace std::chrono_literals;

constexpr auto retryDelay = 1000ms;
constexpr auto pollDelay = 3000ms;
constexpr auto pollInterval = 1000ms;

constexpr double designDotsPerInch = 96.0;
constexpr int englishLanguage = 1;

// Unused here; keeps the entry in the catalogs.
[[maybe_unused]] constexpr const char *updateText =
    QT_TRANSLATE_NOOP("ControlTrackingPlugin", "update");

// Offsets in a status block.
enum StatusByte { TrackingOn = 1, Type = 2, Mode = 3, Composition = 4 };
constexpr quint64 shortestPollReply = 3;

void setSilently(SwitchButton *button, bool on)
{
    button->blockNextSignal();
    button->SetStatus(on, false);
}

void clickSilently(QButtonGroup *group, QAbstractButton *button)
{
    const QSignalBlocker silence(group);
    button->click();
}

// Qt does this only when a button of the group gets the focus.
void letTabReachChecked(const QButtonGroup &group)
{
    const auto buttons = group.buttons();
    for (QAbstractButton *const button : buttons) {
        const auto take = [button, buttons](bool checked) {
            for (QAbstractButton *const other : buttons) {
                if (checked)
                    other->setFocusPolicy(other == button ? Qt::StrongFocus : Qt::ClickFocus);
            }
        };
        QObject::connect(button, &QAbstractButton::toggled, button, take);
        take(button->isChecked());
    }
}

} // namespace

void ControlTrackingPlugin::insertWidget(QWidget *container)
{
    installCatalog();
    ui->setupUi(this);
    makeControlsAccessible();
    setUpKeyboard();
    connectControls();
    PanelPlacement::insertFirst(this, container);

    const ExtensionUnit reply = readStatus(*trackingSwitch);
    if (reply.length != 0)
        applyTrackingStatus(reply);
    else
        QTimer::singleShot(retryDelay, this, &ControlTrackingPlugin::retryStatusRead);

    ui->frame_limit_title->hide();
    ui->frame_limit_setting_spliter->hide();

    scaleForScreen();

    pollTimer->setInterval(pollInterval);
    connect(pollTimer.data(), &QTimer::timeout, this, &ControlTrackingPlugin::pollTrackingStatus);
    QTimer::singleShot(pollDelay, pollTimer.data(), qOverload<>(&QTimer::start));
}

void ControlTrackingPlugin::installCatalog()
{
    // Catalogs stay installed for the life of the process. Keeping them reachable here satisfies
    // leak checkers.
    static auto *const catalogs = new QVector<QTranslator *>;

    const int language = commandChannel ? querySetting(QStringLiteral("language")).toInt() : 0;
    auto *const catalog = new QTranslator;
    catalogs->append(catalog);

    const auto load = [this, catalog](const QString &locale) {
        const QString none = QLatin1String("");
        const QString file = QStringLiteral(":/Plugins/%1_%2.qm").arg(name(), locale);
        if (!catalog->load(file, none, none, none))
            return;
        // Qt derives the direction from the translators again.
        const Qt::LayoutDirection direction = QGuiApplication::layoutDirection();
        QCoreApplication::installTranslator(catalog);
        QGuiApplication::setLayoutDirection(direction);
    };
    const QString chinese = QStringLiteral("zh_CN");
    load(language == englishLanguage ? QStringLiteral("en_US") : chinese);
    if (catalog->isEmpty())
        load(chinese);
}

void ControlTrackingPlugin::connectControls()
{
    connect(ui->frame_title, &QPressFrame::clicked, this, &ControlTrackingPlugin::onTitleClicked);
    connect(ui->sw_title, &SwitchButton::onValueChanged, this,
            &ControlTrackingPlugin::onTrackingSwitch);
    connect(ui->buttonGroup, qOverload<QAbstractButton *, bool>(&QButtonGroup::buttonToggled), this,
            &ControlTrackingPlugin::onTrackingType);
    connect(ui->buttonGroup_mode, // clazy:exclude=old-style-connect
            SIGNAL(buttonToggled(QAbstractButton *, bool)),
            SLOT(onTrackingMode(QAbstractButton *, bool)));
    connect(ui->sw_picture_mode, &SwitchButton::onValueChanged, this,
            &ControlTrackingPlugin::onPictureModeSwitch);
    connect(ui->buttonGroup_picture_mdoe, // clazy:exclude=old-style-connect
            SIGNAL(buttonToggled(QAbstractButton *, bool)),
            SLOT(setPictureModeUI(QAbstractButton *, bool)));
}

// Names the controls after the labels beside them.
void ControlTrackingPlugin::makeControlsAccessible()
{
    makeAccessible(*ui->frame_title, ui->label_title->text());
    makeAccessible(*ui->sw_title, ui->label_title->text());
    makeAccessible(*ui->sw_picture_mode, ui->label_picture_mode->text());
    makeAccessible(*ui->sw_limit, ui->label_limit_title->text());

    ui->wg_half_body->setAccessibleName(ui->label_half_body->text());
    ui->wg_full_body->setAccessibleName(ui->label_full_body->text());
    ui->wg_multi_body->setAccessibleName(ui->label_multi_body->text());

    const auto nameGroup = [](const QButtonGroup *group, const QLabel *label) {
        const auto buttons = group->buttons();
        for (QAbstractButton *const button : buttons)
            button->setAccessibleName(label->text() + QStringLiteral(": ") + button->text());
    };
    nameGroup(ui->buttonGroup, ui->label_tracking_type);
    nameGroup(ui->buttonGroup_mode, ui->label_tracking_mode);
}

void ControlTrackingPlugin::setUpKeyboard()
{
    new FocusFrame(*this);
    // Otherwise Enter in a dialog's line edit presses the first button.
    const auto buttons = findChildren<QPushButton *>();
    for (QPushButton *const button : buttons)
        button->setAutoDefault(false);
    for (const QButtonGroup *const group :
         {ui->buttonGroup, ui->buttonGroup_mode, ui->buttonGroup_picture_mdoe})
        letTabReachChecked(*group);
}

void ControlTrackingPlugin::scaleForScreen()
{
    const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const double factor = screen->logicalDotsPerInch() / designDotsPerInch;
    if (factor > 1.0)
        Talsen::updateObjectSize(*this, factor, 1);
}

void ControlTrackingPlugin::applyTrackingStatus(const ExtensionUnit &reply)
{
    const quint8 type = reply.data[Type];
    const quint8 picture = reply.data[Composition];
    const bool on = reply.data[TrackingOn] != 0;

    const Choice *const composed = choiceOf(picture, compositionChoices);
    if (composed || picture == 0)
        setSilently(ui->sw_picture_mode, composed != nullptr);
    if (composed)
        (ui->*composed->button)->setChecked(true); // reported by its group, and so sent back

    setSilently(ui->sw_title, on);
    ui->frame_picture_title->setVisible(on && type == 0);
    ui->frame_picture_mode->setVisible(on && type == 0 && picture != 0);
    updateSpliter(host(), ui->frame_spliter, on);

    // Here an unknown value selects the first choice. The poll ignores unknown values.
    const Choice *const chosenType = choiceOf(type, typeChoices);
    const Choice *const chosenMode = choiceOf(reply.data[Mode], modeChoices);
    clickSilently(ui->buttonGroup, ui->*(chosenType ? *chosenType : typeChoices[0]).button);
    clickSilently(ui->buttonGroup_mode, ui->*(chosenMode ? *chosenMode : modeChoices[0]).button);
}

void ControlTrackingPlugin::retryStatusRead()
{
    const ExtensionUnit reply = readStatus(*trackingSwitch);
    if (reply.length != 0) {
        applyTrackingStatus(reply);
        return;
    }
    ui->frame_picture_mode->hide();
    ui->frame_picture_title->hide();
    ui->frame_limit_title->hide();
    ui->frame_limit_setting_spliter->hide();
    updateSpliter(host(), ui->frame_spliter, false);
}

void ControlTrackingPlugin::pollTrackingStatus()
{
    const ExtensionUnit reply = readStatus(*trackingSwitch);
    // Start the interval after the answer. Otherwise, after an answer that took longer than the
    // interval, the next poll would be due and run when thawLater() processes this one's events.
    pollTimer->start();
    if (reply.length < shortestPollReply)
        return;

    const quint8 tracking = reply.data[TrackingOn];
    const quint8 type = reply.data[Type];
    const bool on = tracking != 0;
    // Leave a sliding switch to the next poll. SetStatus() would only undo blockNextSignal(). If an
    // earlier poll started the slide, its end would then send a command.
    if (tracking != quint8(ui->sw_title->GetStatus()) && !ui->sw_title->isSliding()) {
        setSilently(ui->sw_title, on);
        updateSpliter(host(), ui->frame_spliter, on);
    }

    if (const Choice *const chosen = choiceOf(type, typeChoices))
        clickSilently(ui->buttonGroup, ui->*chosen->button);
    showCompositionRows(on && type == 0);
}

void ControlTrackingPlugin::updateSpliterSub(QWidget *host, QWidget *section, bool show,
                                             bool finish)
{
    QWidget *const window = host->window();
    window->setUpdatesEnabled(false);
    section->setVisible(show);
    for (QLayout *const affected : {ui->frame_spliter->layout(), layout(), host->layout()}) {
        if (affected)
            affected->invalidate();
    }
    if (finish)
        WindowThaw::thawLater(window);
}

// The panel's container, or the panel itself if it is a window.
QWidget *ControlTrackingPlugin::host()
{
    return parentWidget() ? parentWidget() : this;
}
