#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace rivo::sales
{

/// A pair of Ed25519 keys, which signs what a journal records.
class JournalKey
{
public:
    /// A new pair; nothing if the system has no random numbers.
    static std::optional<JournalKey> make();

    /// The private key of a PEM file, of which the public one follows. Nothing for anything else,
    /// a link included.
    static std::optional<JournalKey> read(const QString& file);

    /// Writes the private key, for its user alone, and the public one to `publicFile`. What is
    /// there before is replaced, each file as a whole.
    bool write(const QString& file, const QString& publicFile) const;

    QByteArray publicKey() const;                     ///< 32 bytes
    QByteArray sign(const QByteArray& message) const; ///< 64 bytes

private:
    struct Pair;
    explicit JournalKey(std::shared_ptr<const Pair> pair) : m_pair(std::move(pair)) {}

    std::shared_ptr<const Pair> m_pair;
};

/// Whether the owner of a public key of 32 bytes signed `message`.
bool isSignedBy(const QByteArray& publicKey, const QByteArray& message,
                const QByteArray& signature);

/// The Ed25519 key of a PEM file with a public key; empty if there is none.
QByteArray publicKeyOf(const QString& file);

/// The content of a regular file, at most `most` bytes; nothing for anything else, a link included.
std::optional<QByteArray> ownContent(const QString& file, qint64 most);

/// Writes `content` for its user alone, as a whole or not at all, and until it is on the disk.
bool writeForOwner(const QString& file, const QByteArray& content);

} // namespace rivo::sales
