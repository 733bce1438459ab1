#include "gallery.h"

#include "areatile.h"
#include "bglinelabel.h"
#include "look.h"
#include "objectscaling.h"
#include "pixmapdisplay.h"
#include "pixmaputils.h"
#include "qpressframe.h"
#include "switchbutton.h"

#include <QApplication>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QSlider>
#include <QSvgRenderer>

#include <algorithm>

namespace {

constexpr int animationTime = 1500; // ms
constexpr QSize pictureSize(640, 360);

/// An arrow pointing up and four corners of different colours, which show how it is turned.
QPixmap ownPicture()
{
    QPixmap picture(pictureSize);
    picture.fill(0x2E5E8C);
    QPainter painter(&picture);
    painter.fillRect(0, 0, 120, 120, 0xE60033);
    painter.fillRect(520, 0, 120, 120, 0xF2B705);
    painter.fillRect(0, 240, 120, 120, 0x2FA36B);
    painter.fillRect(520, 240, 120, 120, Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::black);
    painter.drawPolygon(QPolygon(
        {{320, 50}, {430, 180}, {360, 180}, {360, 310}, {280, 310}, {280, 180}, {210, 180}}));
    return picture;
}

/// `header` is the name, without ".h", of the header in widgets/ that declares the widget.
QGridLayout &addGroup(QGridLayout &page, const QString &title, const QString &header,
                      int columns = 1)
{
    auto *group = new QGroupBox(title);
    group->setObjectName(header);
    page.addWidget(group, page.count() / 2, page.count() % 2, 1, columns);
    return *new QGridLayout(group);
}

/// Adds a widget above its caption, and returns the caption.
QLabel *addCell(QGridLayout &grid, int row, int column, QWidget *widget, const QString &text,
                int columns = 1)
{
    auto *caption = new QLabel(text);
    grid.addWidget(widget, 2 * row, column, 1, columns, Qt::AlignCenter);
    grid.addWidget(caption, 2 * row + 1, column, 1, columns, Qt::AlignHCenter | Qt::AlignTop);
    grid.setRowStretch(2 * row + 1, 1);
    return caption;
}

void addSwitches(QGridLayout &grid)
{
    grid.setHorizontalSpacing(12);
    for (int i = 0; i < 12; ++i) {
        const int column = i % 6;
        auto *button = new SwitchButton(nullptr);
        button->setFixedSize(column < 2 ? QSize(40, 20) : QSize(60, 30));
        button->setEnabled(i < 6);
        QString kind(i < 6 ? "" : "disabled, ");
        if (column >= 4) {
            button->SetActiveColor(0x2FA36B);
            button->SetInactiveColor(0x2E5E8C);
            button->SetSliderColor(0xF2B705);
            kind += i < 6 ? "recoloured, " : "";
        }
        // Not reported: setFixedSize() suppresses the next report.
        button->SetStatus(i % 2 == 1, false);
        QLabel *const caption =
            addCell(grid, i / 6, column, button, kind + (i % 2 == 1 ? "on" : "off"));
        QObject::connect(button, &SwitchButton::onValueChanged, caption, [caption, kind](int open) {
            caption->setText(kind + (open ? "on" : "off"));
        });
    }
}

void addPressFrame(QGridLayout &grid, int column, const QString &caption, bool enabled)
{
    auto *frame = new QPressFrame(nullptr);
    frame->setFixedSize(180, 60);
    frame->setEnabled(enabled);
    auto *clicks = new QLabel("Clicks: 0");
    (new QHBoxLayout(frame))->addWidget(clicks, 0, Qt::AlignCenter);
    const auto showHover = [frame](bool over) {
        frame->setStyleSheet(QString("QPressFrame { background: %1; border-radius: 5px; }")
                                 .arg(over ? "#3A3F46" : "#282B30"));
    };
    showHover(false);
    QObject::connect(frame, &QPressFrame::hoverEvent, frame, showHover);
    QObject::connect(frame, &QPressFrame::clicked, clicks, [clicks, count = 0]() mutable {
        clicks->setText(QString("Clicks: %1").arg(++count));
    });
    addCell(grid, 0, column, frame, caption);
}

void addGuideLabels(QGridLayout &grid)
{
    grid.setSpacing(0);
    for (int location = 0; location < 8; ++location) {
        const int cell = location < 4 ? location : location + 1;
        auto *label = new BgLineLabel(nullptr);
        label->setMinimumSize(124, 36);
        label->setAlignment(Qt::AlignCenter);
        QString style = QString("location:%1;").arg(location);
        if (cell % 2 == 1) { // a side
            label->setText(style.chopped(1));
            style.prepend("QLabel {\ncolor:#99CECEDA;\nfont: 9pt;\nbackground: #282B30;\n"
                          "border-radius:13px;\nmargin: 4px;\npadding: 5px;\n}\n");
        }
        label->setStyleSheet(style);
        grid.addWidget(label, cell / 3, cell % 3);
    }
}

void addAreaRow(QGridLayout &grid)
{
    auto *frame = new QFrame;
    frame->setFixedSize(291, 35);
    frame->setStyleSheet("QPushButton {\nbackground: transparent;\nborder: none;\n}");
    auto *row = new QHBoxLayout(frame);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(9);
    auto *add = new QPushButton("+", frame);
    add->setMinimumSize(91, 35);
    add->setMaximumWidth(91);
    add->setStyleSheet("QPushButton {\nbackground: #282B30;\nborder-radius:5px;\n}");
    row->addWidget(add);
    row->addStretch();

    QObject::connect(add, &QPushButton::clicked, frame, [row, add, start = -90]() mutable {
        const AreaTile tile = insertAreaTile(*row, *add, start, start + 20);
        QObject::connect(tile.frame, &QPressFrame::hoverEvent, tile.deleteButton,
                         &QWidget::setVisible);
        QObject::connect(tile.deleteButton, &QPushButton::clicked, tile.frame,
                         [row, add, tile] { removeAreaTile(*row, *add, tile.frame); });
        start += 30;
    });
    add->click();
    add->click();
    addCell(grid, 0, 0, frame, "two to start with, at most three");
}

} // namespace

Gallery::Gallery()
    : m_picture(ownPicture())
    , m_scale(new QSlider(Qt::Horizontal))
    , m_scroll(new QScrollArea)
{
    setWindowTitle("Widget gallery");
    // Set on the application: widgets with a style sheet ignore the window's font.
    QApplication::setFont(Look::font());

    auto *scaleText = new QLabel("1.0x");
    m_scale->setRange(10, 30);
    connect(m_scale, &QSlider::valueChanged, this, [this, scaleText](int tenths) {
        scaleText->setText(QString("%1x").arg(tenths / 10.0, 0, 'f', 1));
        rebuild();
    });
    auto *choose = new QPushButton("Choose picture...");
    connect(choose, &QPushButton::clicked, this, [this] {
        const QString path = QFileDialog::getOpenFileName(this);
        const QString error = path.isEmpty() ? QString() : setPicture(path);
        if (!error.isEmpty())
            QMessageBox::warning(this, windowTitle(), error);
    });
    auto *animate = new QPushButton("Animate");
    connect(animate, &QPushButton::clicked, this, [this] {
        m_animated->startAnimation({{0, 0}, m_animated->size() / 4}, {}, animationTime);
    });

    auto *bar = new QHBoxLayout;
    bar->addWidget(new QLabel("Scale"));
    bar->addWidget(m_scale);
    bar->addWidget(scaleText);
    bar->addWidget(choose);
    bar->addWidget(animate);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setAlignment(Qt::AlignCenter);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(m_scroll);
    rebuild();
    resize(Gallery::sizeHint());
}

QString Gallery::setPicture(const QString &path)
{
    // An SVG needs a size. If the file is not a valid SVG, the size stays empty and loading fails.
    QSize size(0, 0);
    if (path.endsWith("svg", Qt::CaseInsensitive)) {
        size = QSvgRenderer(path).defaultSize();
        if (!size.isEmpty())
            size.scale(pictureSize, Qt::KeepAspectRatio);
    }
    removePixmapCache(path);
    const QPixmap picture = loadPixmapAutoFormat(path, size, false);
    if (picture.isNull())
        return QString("Cannot read the picture \"%1\".").arg(path);
    m_picture = picture;
    rebuild();
    return {};
}

QSize Gallery::sizeHint() const
{
    return layout()->sizeHint() - m_scroll->sizeHint() + m_scroll->widget()->size();
}

void Gallery::addDisplays(QGridLayout &grid)
{
    const auto add = [&](const char *caption, const QPixmap *picture, int columns = 1) {
        const int cell = grid.count() / 2;
        auto *display = new PixmapDisplay;
        display->setFixedSize(columns * 152, 112);
        display->setBackground(0x282B30);
        if (picture)
            display->setPixmap(*picture);
        addCell(grid, cell / 6, cell % 6, display, caption, columns);
        return display;
    };
    add("stretch", &m_picture)->setScaleType(PixmapDisplay::ScaleStretch);
    add("fit", &m_picture)->setScaleType(PixmapDisplay::ScaleFit);
    add("fill", &m_picture)->setScaleType(PixmapDisplay::ScaleFill);
    PixmapDisplay *const left = add("turned left", &m_picture);
    left->setPreviewOri(1);
    left->setPreviewForward(false);
    add("turned round", &m_picture)->setPreviewOri(2);
    PixmapDisplay *const right = add("turned right", &m_picture);
    right->setPreviewOri(3);
    right->setPreviewForward(false);
    PixmapDisplay *const rounded = add("rounded corners", &m_picture);
    rounded->setScaleType(PixmapDisplay::ScaleFill);
    rounded->setRoundCorder(20);
    rounded->setBackground(Qt::transparent);
    add("disabled", &m_picture)->setEnabled(false);
    add("no picture yet", nullptr);
    add("no picture, blank", nullptr)->hideLoading();
    m_animated = add("animated", &m_picture, 2);
}

void Gallery::rebuild()
{
    auto *content = new QWidget(this);
    auto *page = new QGridLayout(content);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSizeConstraint(QLayout::SetFixedSize);
    addSwitches(addGroup(*page, "Switches", "switchbutton"));
    QGridLayout &frames = addGroup(*page, "Press frames", "qpressframe");
    addPressFrame(frames, 0, "enabled", true);
    addPressFrame(frames, 1, "disabled", false);
    addGuideLabels(addGroup(*page, "Guide labels", "bglinelabel"));
    addAreaRow(addGroup(*page, "Area tiles", "areatile"));
    addDisplays(addGroup(*page, "Picture displays", "pixmapdisplay", 2));

    const double dense = std::max(1.0, logicalDpiX() / 96.0);
    Talsen::changeObjectSizeInner(*content, dense * m_scale->value() / 10);
    page->activate();
    m_scroll->setWidget(content);
}
