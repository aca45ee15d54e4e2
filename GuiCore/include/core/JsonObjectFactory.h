#pragma once

#include <core/CoreExport.h>

#include <QtCore/QDebug>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <cstddef>
#include <new>
#include <utility>

namespace QJsonWrapper
{

/// The registry of configuration objects, one per process.
class RIVO_CORE_EXPORT JsonObjectFactory
{
public:
    /// Whether an object is registered under @p key.
    static bool isRegistered(QString key);

    /// The registry: key to object. It does not own the objects.
    static QMap<QString, const QObject*>& m_ObjectsMap();

    template <typename T>
    class JsonObjectRegistration;
};

/// Registers one parentless T under a key for as long as this registration lives.
///
/// The object is created when the first registration of its type needs it; it is one per type and
/// registering library, and is destroyed when that library is unloaded.
template <typename T>
class Q_DECL_HIDDEN JsonObjectFactory::JsonObjectRegistration
{
public:
    /// An entry that is already there is left as it is. An empty key registers nothing and is
    /// reported through qDebug.
    explicit JsonObjectRegistration(QString key) : m_key(std::move(key))
    {
        if (m_key.isEmpty()) {
            qDebug("\n\n\n Requested empty class registration \n\n\n");
        } else if (!isRegistered(m_key)) {
            m_object = processWideObject();
            m_ObjectsMap().insert(m_key, m_object);
        }
    }

    /// Takes back the entry that this registration made, before its object can die.
    ~JsonObjectRegistration()
    {
        if (m_object && m_ObjectsMap().value(m_key) == m_object)
            m_ObjectsMap().remove(m_key);
    }

    Q_DISABLE_COPY(JsonObjectRegistration)

private:
    /// The object in memory of its own. The core library may come from another maker, whose T has
    /// another size than the one that is declared here; its constructor knows that size alone.
    class Block
    {
    public:
        Block() { new (m_memory) T(nullptr); }
        ~Block() { object()->T::~T(); }
        Q_DISABLE_COPY(Block)

        T* object() { return std::launder(reinterpret_cast<T*>(m_memory)); }

    private:
        static constexpr std::size_t size = 16 * 1024;
        static_assert(sizeof(T) <= size);

        alignas(T) alignas(64) unsigned char m_memory[size] = {};
    };

    // A registration's constructor ends after the object's, so its destructor runs first.
    static const QObject* processWideObject()
    {
        static Block block;
        return block.object();
    }

    QString m_key;
    const QObject* m_object = nullptr;
};

} // namespace QJsonWrapper
