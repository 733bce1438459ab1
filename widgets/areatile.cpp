#include "areatile.h"

#include "qpressframe.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace {

constexpr int itemsWithTwoTiles = 4; // including the add button and the spacer
constexpr int deleteSide = 12;
constexpr int deleteMargin = 5;

const char tileStyle[] = "QFrame {\n"
                         "        background: #282B30;\n"
                         "        border-radius:5px;\n"
                         "    }\n"
                         "    QLabel {\n"
                         "        color:#99CECEDA;\n"
                         "        font: 9pt;\n"
                         "    }\n"
                         "    ";

const char deleteStyle[] = "QPushButton {\n"
                           "        image: url(:/UI/icon_delete.svg);\n"
                           "    }\n"
                           "    QPushButton:hover {\n"
                           "        image: url(:/UI/icon_delete_hover.svg);\n"
                           "    }";

} // namespace

AreaTile insertAreaTile(QBoxLayout &row, QWidget &addButton, long startAngle, long endAngle)
{
    const QSize size(addButton.maximumWidth(), addButton.height());

    auto *const tile = new QPressFrame(nullptr);
    tile->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    tile->setFixedWidth(size.width());
    tile->setFrameShape(QFrame::NoFrame);
    tile->setStyleSheet(QLatin1String(tileStyle));

    auto *const angles = new QLabel(tile);
    angles->setFixedSize(size);
    angles->setAlignment(Qt::AlignCenter);
    angles->setText(QStringLiteral("%1\u00B0/%2\u00B0").arg(startAngle).arg(endAngle));
    angles->show();

    auto *const remove = new QPushButton(tile);
    remove->setObjectName(QStringLiteral("delete"));
    remove->setAutoDefault(false);
    remove->setFixedSize(deleteSide, deleteSide);
    remove->setStyleSheet(QLatin1String(deleteStyle));
    remove->move(size.width() - deleteSide - deleteMargin, deleteMargin);
    remove->hide();

    if (row.count() < itemsWithTwoTiles) {
        row.insertWidget(row.count() - 2, tile);
    } else {
        addButton.hide();
        row.insertWidget(2, tile);
    }
    return {tile, remove};
}

void removeAreaTile(QBoxLayout &row, QWidget &addButton, QPressFrame *tile)
{
    if (row.count() >= itemsWithTwoTiles)
        addButton.show();
    row.removeWidget(tile);
    delete tile;
}
