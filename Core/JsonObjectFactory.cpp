#include <core/JsonObjectFactory.h>

namespace QJsonWrapper
{

bool JsonObjectFactory::isRegistered(QString key) { return m_ObjectsMap().contains(key); }

QMap<QString, const QObject*>& JsonObjectFactory::m_ObjectsMap()
{
    // Built when the first registration asks for it, whatever the order of static initialisation.
    static QMap<QString, const QObject*> objects;
    return objects;
}

} // namespace QJsonWrapper
