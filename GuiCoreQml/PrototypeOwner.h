#pragma once

#include <QObject>

#include <memory>

/// A list model that owns its prototype row, for models that QML creates: those come without a
/// parent, and the model's own constructor would leak the prototype. Its meta-object is
/// that of the model.
template <typename Model>
class PrototypeOwner : public Model // no Q_OBJECT: not a class of its own to QML
{
public:
    PrototypeOwner() : PrototypeOwner(std::make_unique<QObject>()) {}

private:
    explicit PrototypeOwner(std::unique_ptr<QObject> prototypeParent)
        : Model(prototypeParent.get()), m_prototypeParent(std::move(prototypeParent))
    {
        // The prototype stays behind; the model itself is the QML engine's to place and to delete.
        this->setParent(nullptr);
    }

    std::unique_ptr<QObject> m_prototypeParent;
};
