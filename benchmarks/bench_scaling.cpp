// Scaling a tree of widgets that was not shown yet.

#include "application.h"
#include "benchmark.h"
#include "objectscaling.h"

#include <QPushButton>

#include <cmath>

namespace {

// Rows of ten, as a panel has them, each in a frame of its own.
void fill(QWidget &root, int widgets)
{
    QWidget *row = nullptr;
    for (int i = 0; i < widgets; ++i) {
        QWidget *widget;
        if (i % 10 == 0)
            widget = row = new QWidget(&root);
        else if (i % 10 == 5)
            widget = new QPushButton(row);
        else
            widget = new QWidget(row);
        widget->setGeometry(10, 20, 200, 40);
        if (i % 3 == 0)
            widget->setMinimumSize(20, 20);
        if (i % 4 == 0)
            widget->setMaximumSize(800, 800);
    }
}

int nearest(int length, double factor)
{
    return static_cast<int>(std::lround(length * factor));
}

void scalePlainly(const QList<QWidget *> &widgets, double factor)
{
    for (QWidget *const widget : widgets) {
        if (widget->minimumWidth() != 0)
            widget->setMinimumWidth(nearest(widget->minimumWidth(), factor));
        if (widget->minimumHeight() != 0)
            widget->setMinimumHeight(nearest(widget->minimumHeight(), factor));
        if (widget->maximumWidth() < QWIDGETSIZE_MAX)
            widget->setMaximumWidth(nearest(widget->maximumWidth(), factor));
        if (widget->maximumHeight() < QWIDGETSIZE_MAX)
            widget->setMaximumHeight(nearest(widget->maximumHeight(), factor));
        widget->setGeometry(nearest(widget->x(), factor), nearest(widget->y(), factor),
                            nearest(widget->width(), factor), nearest(widget->height(), factor));
        if (auto *const button = qobject_cast<QPushButton *>(widget))
            button->setIconSize(button->iconSize() * factor);
    }
}

// Back and forth, so that every turn finds the same sizes.
constexpr double factors[] = {1.25, 0.8};

} // namespace

int main()
{
    const Application application;
    constexpr int sizes[] = {100, 1000, 10000};
    static const char *const subjects[] = {"scaling 100 hidden widgets, and back",
                                           "scaling 1,000 hidden widgets, and back",
                                           "scaling 10,000 hidden widgets, and back"};
    QWidget trees[3];
    QWidget plainTrees[3];
    double each[3];
    for (int i = 0; i < 3; ++i) {
        fill(trees[i], sizes[i]);
        fill(plainTrees[i], sizes[i]);
        const QList<QWidget *> list = plainTrees[i].findChildren<QWidget *>();
        const Bench::Step scale = [&root = trees[i]] {
            for (double factor : factors)
                Talsen::updateObjectSize(root, factor, 0);
        };
        const Bench::Step scaleList = [list] {
            for (double factor : factors)
                scalePlainly(list, factor);
        };
        Bench::instructions(subjects[i], "1.3", scale, scaleList);
        Bench::time(subjects[i], "1.3", scale, scaleList);
        // As many widgets each time, whatever the size of a tree.
        each[i] = Bench::bestOf(20,
                                [&] {
                                    for (int turn = 0; turn < sizes[2] / sizes[i]; ++turn)
                                        scale();
                                }) /
                  sizes[2];
    }
    Bench::figure("scaling a widget, of 10,000 against of 100", "ns", "1.3", each[2], each[0]);
    return Bench::run();
}
