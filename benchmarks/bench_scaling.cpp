// Scaling a tree of widgets that was not shown yet: what a widget costs must not grow with the
// tree.

#include "application.h"
#include "benchmark.h"
#include "objectscaling.h"

#include <QPushButton>

namespace {

// Rows of ten, as a panel has them, each in a frame of its own.
void fill(QWidget &root, int widgets)
{
    QWidget *row = nullptr;
    for (int i = 0; i < widgets; ++i) {
        QWidget *widget = nullptr;
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

} // namespace

int main()
{
    const Application application;
    constexpr int few = 100;
    constexpr int many = 10000;
    QWidget small;
    QWidget large;
    fill(small, few);
    fill(large, many);
    const auto scale = [](QWidget &root, int turns) {
        return [&root, turns] {
            for (int i = 0; i < turns; ++i) { // and back, so that every turn finds the same sizes
                Talsen::updateObjectSize(root, 1.25, 0);
                Talsen::updateObjectSize(root, 0.8, 0);
            }
        };
    };
    // As many widgets on either side.
    const char subject[] = "scaling 10,000 widgets, in one tree against in 100";
    Bench::instructions(subject, "1.1", scale(large, 1), scale(small, many / few));
    Bench::time(subject, "1.3", scale(large, 1), scale(small, many / few));
    return Bench::run();
}
