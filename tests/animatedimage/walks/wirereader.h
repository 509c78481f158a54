#pragma once

#include "tests/animatedimage/walks/wire.h"

/// Takes the values of a request one after another, as far as its bytes have come. A value that is
/// truncated, and every value after it, is 0.
class WireReader
{
public:
    WireReader(const QVector<WireItem> &items, int bytesThere)
        : m_items(items)
        , m_left(bytesThere)
    {
    }

    int number() { return next().number; }
    bool flag() { return next().number != 0; }
    QString text() { return next().text; }
    int picture() { return next().number; }

    /// Whether everything that was taken had come.
    bool isWhole() const { return m_left >= 0; }

private:
    WireItem next()
    {
        const WireItem item = m_items.value(m_next++);
        m_left = m_next <= m_items.size() ? m_left - Wire::size({item}) : -1;
        return isWhole() ? item : WireItem();
    }

    QVector<WireItem> m_items;
    int m_next = 0;
    int m_left;
};
