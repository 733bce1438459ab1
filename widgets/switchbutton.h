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
    /// White, with a diameter of 0 until setSize().
    explicit Slider(QWidget *parent);

    /// Sets the knob's diameter in pixels. The switch calls this at every layout. Default: 0.
    void setSize(int diameter);

    /// Returns the knob's diameter in pixels, not the widget's width.
    int width() const;

    /// Default: white.
    void SetSliderColor(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor sliderColor = Qt::white;
    int size = 0;
};

/// An animated on/off switch: a pill-shaped track with a knob that slides between its ends.
///
/// A press, or a SetStatus() that changes the state, starts a slide of 100 ms. GetStatus() returns
/// the new state at once; onValueChanged() reports it at the end of the slide. Until then, further
/// presses and changes are ignored. If a slide replaces a running one, only one report follows.
///
/// A new size moves the knob and starts a slide, which is not reported. If this slide replaces one
/// that is due to be reported, the report still follows. But SetSize(), setGeometry(),
/// setFixedSize() and resize() of this class suppress the report of the next slide that ends,
/// whatever started it.
///
/// \image html switchbutton.png "On and off in two sizes, with other colours, and disabled"
class SwitchButton : public QWidget
{
    Q_OBJECT

public:
    /// The switch is off.
    explicit SwitchButton(QWidget *parent);

    /// Changes the state with a slide. If the switch is sliding or already has that state, nothing
    /// changes, but `forceSignal` makes it report its current state at once.
    void SetStatus(bool on, bool forceSignal);

    /// Returns true if on; during a slide, the state at its end. Default: off.
    bool GetStatus() const;

    /// Returns true while a slide that changes the state is pending or running.
    bool isSliding() const;

    /// Suppresses the report of the next slide that ends. A SetStatus() that does not start a slide
    /// cancels this.
    void blockNextSignal();

    /// Colour of the track when on; default "#E60033". Takes effect at the next repaint.
    void SetActiveColor(const QColor &color);
    /// Colour of the track when off; default "#3A3F46". Takes effect at the next repaint.
    void SetInactiveColor(const QColor &color);
    /// Colour of the knob; default white. Takes effect at once.
    void SetSliderColor(const QColor &color);

    /// Lays out track and knob for `w` x `h` pixels without resizing the widget, and suppresses the
    /// report of the next slide that ends.
    void SetSize(int w, int h);

    /// \name Sizes
    /// Like QWidget's functions, followed by SetSize(), so that even a hidden switch is laid out.
    /// \{

    /// Moves and resizes the switch, in its parent's coordinates.
    void setGeometry(const QRect &rect);
    /// Sets both the minimum and the maximum size.
    void setFixedSize(const QSize &fixed);
    /// Resizes the switch within its minimum and maximum size.
    void resize(const QSize &newSize);
    /// \}

Q_SIGNALS:
    /// A slide ended with the switch on (1) or off (0).
    void onValueChanged(int open);
    /// Internal: starts the slide from the event loop.
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
    QPainterPath track; // empty until painted at the current size
    Slider *slider;
    QSize laidOut; // invalid before the first layout
};
