#pragma once

#include <QSplitter>

/// A splitter with visible handles, which the arrow keys move, too.
class Splitter : public QSplitter
{
public:
    using QSplitter::QSplitter;

protected:
    QSplitterHandle *createHandle() override;
};
