#pragma once

#include <QBrush>
#include <QColor>
#include <QPainterPath>
#include <QSize>
#include <QWidget>

/// The round knob of a SwitchButton.
class Slider : public QWidget
{
    Q_OBJECT

public:
    /// White, and without a size until setSize().
    explicit Slider(QWidget *parent);

    /// Sets the knob's diameter in pixels. The owning switch does so with every layout.
    void setSize(int diameter);

    /// The knob's diameter in pixels, not the widget's width.
    int width() const;

    /// Default: white.
    void SetSliderColor(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor sliderColor = Qt::white;
    int size = 0;
};

/// An animated two-state switch: a pill-shaped track with a knob that slides between its ends.
///
/// A press, or a SetStatus that changes the state, starts a slide of 100 ms. GetStatus() tells the
/// new state at once; onValueChanged() reports it when the slide has ended. Until then further
/// presses and state changes are dropped. A slide that is started on top of another replaces it,
/// and one report follows.
///
/// A new size places the knob and starts a slide to it. Such a slide reports nothing by itself, and
/// where it replaces one that is under way, that one is still reported. Only a size given through
/// SetSize(), setGeometry(), setFixedSize() or resize() of this class silences the next slide that
/// ends, whoever started it.
///
/// \image html switchbutton.png "On and off in two sizes, recoloured, and disabled"
class SwitchButton : public QWidget
{
    Q_OBJECT

public:
    /// Off.
    explicit SwitchButton(QWidget *parent);
    ~SwitchButton() override;

    /// Changes the state with a slide. If the switch has that state already, or slides, the request
    /// is dropped; with `forceSignal` the present state is then reported at once.
    void SetStatus(bool on, bool forceSignal);

    /// True means on. Default: off.
    bool GetStatus() const;

    /// True from the press or SetStatus that starts a slide until that slide has ended.
    bool isSliding() const;

    /// Keeps the next completed slide from being reported. A SetStatus that starts no slide takes
    /// this back.
    void blockNextSignal();

    /// The track when on; default "#E60033". Shows at the next repaint.
    void SetActiveColor(const QColor &color);
    /// The track when off; default "#3A3F46". Shows at the next repaint.
    void SetInactiveColor(const QColor &color);
    /// The knob; default white. Shows at once.
    void SetSliderColor(const QColor &color);

    /// Lays out for a size of `w` x `h` pixels, and silences the next slide that ends; the widget
    /// itself keeps its size.
    void SetSize(int w, int h);

    /// \name Sizes
    /// As in QWidget, and laid out at once as by SetSize(), also while hidden.
    /// \{

    /// In the parent's coordinates.
    void setGeometry(const QRect &rect);
    /// Both the smallest and the largest size.
    void setFixedSize(const QSize &fixed);
    /// Within the smallest and the largest size.
    void resize(const QSize &newSize);
    /// \}

Q_SIGNALS:
    /// A slide has ended: 1 on, 0 off.
    void onValueChanged(int open);
    /// The slide is to start on the next turn of the event loop. For the switch's own use.
    void sendAnimate();

protected Q_SLOTS:
    void animate();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void place(const QSize &area);
    void relayout(const QSize &area);
    void change(bool on);
    void ToActive();
    void ToInactive();
    void slide(int fromX, int fromY, int toX);
    void finishSlide();

    bool blockNext = false;
    bool status = false;
    int diameter;
    int travel;
    qint16 margin = 2;
    int duration = 100; // ms
    bool idle = true;
    QBrush activeBrush;
    QBrush inactiveBrush;
    QPainterPath track; // empty until painted at the present size
    Slider *slider;
    QSize laidOut; // invalid until the first layout
};
