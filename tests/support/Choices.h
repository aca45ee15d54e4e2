#pragma once

#include <QByteArray>
#include <QRandomGenerator>

/// What decides in a test that tries many things: a random generator, or the bytes of an input that
/// a fuzzer bends until they lead somewhere new.
class Choices
{
public:
    explicit Choices(quint32 seed) : m_generator(seed) {}
    explicit Choices(const QByteArray& bytes) : m_bytes(bytes), m_isRandom(false) {}

    /// From 0 to `end` - 1; `end` is at least 1. 0 when the bytes are used up.
    int bounded(int end)
    {
        if (m_isRandom)
            return m_generator.bounded(end);
        quint32 value = 0;
        for (quint32 reach = static_cast<quint32>(end) - 1; reach > 0; reach >>= 8)
            value = value << 8 | nextByte();
        return static_cast<int>(value % static_cast<quint32>(end));
    }

    /// From `first` to `end` - 1.
    int bounded(int first, int end) { return first + bounded(end - first); }

    /// Never of a random generator.
    bool areUsedUp() const { return !m_isRandom && m_next >= m_bytes.size(); }

private:
    quint8 nextByte()
    {
        return areUsedUp() ? quint8(0) : static_cast<quint8>(m_bytes.at(m_next++));
    }

    QRandomGenerator m_generator;
    QByteArray m_bytes;
    int m_next = 0;
    bool m_isRandom = true;
};
