#pragma once

#include <QQuickItem>
#include <QTest>
#include <QTouchDevice>
#include <QWindow>

constexpr int tapTime = 80; ///< from one press to the next, milliseconds: a quick finger

constexpr int holdTime = 1000; ///< longer than Qt's own 800 milliseconds

/// A finger or a mouse. Presses are as close to each other as quick ones are.
class Pointer
{
public:
    Pointer(QWindow* window, bool isTouch) : m_window(window)
    {
        static QTouchDevice* const screen = QTest::createTouchDevice();
        m_screen = isTouch ? screen : nullptr;
    }

    void tap(const QPoint& place)
    {
        send(place, true);
        QTest::qWait(tapTime / 2);
        send(place, false);
        QTest::qWait(tapTime / 2);
    }

    /// Held down until the control takes it for more than a tap.
    void hold(const QPoint& place)
    {
        send(place, true);
        QTest::qWait(holdTime);
        send(place, false);
        QTest::qWait(tapTime / 2);
    }

    /// Pressed, moved in steps, released.
    void drag(const QPoint& from, const QPoint& to)
    {
        constexpr int steps = 8;
        send(from, true);
        for (int step = 1; step <= steps; ++step) {
            move(from + (to - from) * step / steps);
            QTest::qWait(tapTime / 4);
        }
        send(to, false);
        QTest::qWait(tapTime / 2);
    }

private:
    void move(const QPoint& place)
    {
        if (m_screen != nullptr) {
            QTest::touchEvent(m_window, m_screen).move(0, place, m_window);
            return;
        }
        m_time += tapTime / 4;
        qt_handleMouseEvent(m_window, place, m_window->mapToGlobal(place), Qt::LeftButton,
                            Qt::NoButton, QEvent::MouseMove, Qt::NoModifier, m_time);
    }

    void send(const QPoint& place, bool isPress)
    {
        if (m_screen != nullptr) {
            QTest::QTouchEventSequence touch = QTest::touchEvent(m_window, m_screen);
            if (isPress)
                touch.press(0, place, m_window);
            else
                touch.release(0, place, m_window);
            return; // sent when the sequence ends
        }
        // QTest::mouseClick() moves its clock on so far that two clicks are never a double click.
        m_time += tapTime / 2;
        qt_handleMouseEvent(m_window, place, m_window->mapToGlobal(place),
                            isPress ? Qt::LeftButton : Qt::NoButton, Qt::LeftButton,
                            isPress ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease,
                            Qt::NoModifier, m_time);
    }

    QWindow* m_window;
    QTouchDevice* m_screen = nullptr;
    int m_time = 1000;
};

inline QPoint middleOf(const QQuickItem* item)
{
    return item->mapToScene({item->width() / 2, item->height() / 2}).toPoint();
}
