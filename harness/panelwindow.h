#pragma once

#include <QVBoxLayout>
#include <QWidget>

/// A host's window with a container for a panel. Not shown at first.
struct PanelWindow
{
    PanelWindow()
    {
        window.setObjectName("window");
        container->setObjectName("container");
        (new QVBoxLayout(&window))->addWidget(container);
        new QVBoxLayout(container);
        window.resize(600, 900);
    }

    QWidget window;
    QWidget *container = new QWidget;
};
