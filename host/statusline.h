#pragma once

#include <QLabel>
#include <QTimer>

class TransferQueue;

/// Shows the camera's condition in one line. Shortens the text to the width of the line; the tool
/// tip has all of it.
class StatusLine : public QLabel
{
    Q_OBJECT
public:
    /// `queue` must outlive the line.
    explicit StatusLine(const TransferQueue &queue);

    /// Shows a sentence before everything else, from now on.
    void setNotice(const QString &notice);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void updateText();
    QString describe() const;

    const TransferQueue &m_queue;
    QString m_notice;
    QTimer m_waiting;            ///< runs while commands wait
    bool m_showsWaiting = false; ///< they have waited for a while
};
