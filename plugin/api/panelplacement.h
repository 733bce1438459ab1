#pragma once

#include <QBoxLayout>
#include <QWidget>

/// \file
/// For panels; hosts do not need it.

/// Places a panel in its container.
namespace PanelPlacement {

/// Puts `panel` into `container`, which becomes its owner: first in a box layout, last in any
/// other. A container without a layout gets a vertical one without margins.
inline void insertFirst(QWidget *panel, QWidget *container)
{
    if (!container->layout())
        (new QVBoxLayout(container))->setContentsMargins(0, 0, 0, 0);

    if (auto *const box = qobject_cast<QBoxLayout *>(container->layout()))
        box->insertWidget(0, panel);
    else
        container->layout()->addWidget(panel);
}

} // namespace PanelPlacement
