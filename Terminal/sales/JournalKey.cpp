#include "JournalKey_p.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <fcntl.h>
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rivo::sales
{

namespace
{

constexpr int keySize = 32;
constexpr int signatureSize = 64;
constexpr qint64 mostOfPem = 4096;

template <auto Release>
struct ReleasedBy
{
    template <typename T>
    void operator()(T* object) const
    {
        Release(object);
    }
};

using OwnedKey = std::unique_ptr<EVP_PKEY, ReleasedBy<EVP_PKEY_free>>;
using OwnedContext = std::unique_ptr<EVP_MD_CTX, ReleasedBy<EVP_MD_CTX_free>>;
using OwnedBio = std::unique_ptr<BIO, ReleasedBy<BIO_free>>;

const unsigned char* bytesOf(const QByteArray& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

unsigned char* bytesOf(QByteArray& bytes) { return reinterpret_cast<unsigned char*>(bytes.data()); }

QByteArray rawPublicKey(const EVP_PKEY* key)
{
    QByteArray raw(keySize, '\0');
    size_t size = keySize;
    const bool isEd25519 = key != nullptr && EVP_PKEY_id(key) == EVP_PKEY_ED25519;
    return isEd25519 && EVP_PKEY_get_raw_public_key(key, bytesOf(raw), &size) == 1 ? raw
                                                                                   : QByteArray();
}

QByteArray contentOf(BIO* bio)
{
    char* text = nullptr;
    const long size = BIO_get_mem_data(bio, &text);
    return {text, static_cast<int>(size)};
}

OwnedBio bioOf(const QByteArray& content)
{
    return OwnedBio(BIO_new_mem_buf(content.constData(), content.size()));
}

bool writeAll(int file, const QByteArray& content)
{
    return ::write(file, content.constData(), static_cast<size_t>(content.size())) ==
               content.size() &&
           fsync(file) == 0;
}

/// A name that was given to a file is on the disk when its folder is.
bool storeFolderOf(const QString& file)
{
    const int folder = ::open(QFile::encodeName(QFileInfo(file).absolutePath()).constData(),
                              O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool isStored = folder >= 0 && fsync(folder) == 0;
    if (folder >= 0)
        ::close(folder);
    return isStored;
}

} // namespace

struct JournalKey::Pair
{
    OwnedKey key;
};

std::optional<JournalKey> JournalKey::make()
{
    OwnedKey key(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"));
    if (key == nullptr)
        return std::nullopt;
    return JournalKey(std::make_shared<const Pair>(Pair{std::move(key)}));
}

std::optional<JournalKey> JournalKey::read(const QString& file)
{
    const auto content = ownContent(file, mostOfPem);
    if (!content)
        return std::nullopt;
    // Without a password: a callback would ask for one on the terminal.
    char noPassword[] = "";
    OwnedKey key(PEM_read_bio_PrivateKey(bioOf(*content).get(), nullptr, nullptr, noPassword));
    if (rawPublicKey(key.get()).isEmpty())
        return std::nullopt;
    return JournalKey(std::make_shared<const Pair>(Pair{std::move(key)}));
}

bool JournalKey::write(const QString& file, const QString& publicFile) const
{
    const OwnedBio secret(BIO_new(BIO_s_mem()));
    const OwnedBio open(BIO_new(BIO_s_mem()));
    return PEM_write_bio_PrivateKey(secret.get(), m_pair->key.get(), nullptr, nullptr, 0, nullptr,
                                    nullptr) == 1 &&
           PEM_write_bio_PUBKEY(open.get(), m_pair->key.get()) == 1 &&
           writeForOwner(publicFile, contentOf(open.get())) &&
           writeForOwner(file, contentOf(secret.get()));
}

QByteArray JournalKey::publicKey() const { return rawPublicKey(m_pair->key.get()); }

QByteArray JournalKey::sign(const QByteArray& message) const
{
    const OwnedContext context(EVP_MD_CTX_new());
    QByteArray signature(signatureSize, '\0');
    size_t size = signatureSize;
    const bool isSigned =
        EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, m_pair->key.get()) == 1 &&
        EVP_DigestSign(context.get(), bytesOf(signature), &size, bytesOf(message),
                       static_cast<size_t>(message.size())) == 1;
    return isSigned ? signature : QByteArray();
}

bool isSignedBy(const QByteArray& publicKey, const QByteArray& message, const QByteArray& signature)
{
    const OwnedKey key(EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, bytesOf(publicKey),
                                                   static_cast<size_t>(publicKey.size())));
    const OwnedContext context(EVP_MD_CTX_new());
    return key != nullptr &&
           EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) == 1 &&
           EVP_DigestVerify(context.get(), bytesOf(signature),
                            static_cast<size_t>(signature.size()), bytesOf(message),
                            static_cast<size_t>(message.size())) == 1;
}

QByteArray publicKeyOf(const QString& file)
{
    const auto content = ownContent(file, mostOfPem);
    if (!content)
        return {};
    const OwnedKey key(PEM_read_bio_PUBKEY(bioOf(*content).get(), nullptr, nullptr, nullptr));
    return rawPublicKey(key.get());
}

std::optional<QByteArray> ownContent(const QString& file, qint64 most)
{
    // A pipe that has the name is not waited for.
    const int opened =
        ::open(QFile::encodeName(file).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (opened < 0)
        return std::nullopt;
    struct stat info = {};
    QFile content;
    if (fstat(opened, &info) != 0 || !S_ISREG(info.st_mode) || info.st_size > most ||
        !content.open(opened, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(opened);
        return std::nullopt;
    }
    return content.read(most);
}

bool writeForOwner(const QString& file, const QByteArray& content)
{
    const QByteArray path = QFile::encodeName(file);
    const QByteArray made = path + ".new";
    ::unlink(made.constData());
    const int opened = ::open(
        made.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    const bool isWritten = opened >= 0 && writeAll(opened, content);
    if (opened >= 0)
        ::close(opened);
    return isWritten && std::rename(made.constData(), path.constData()) == 0 && storeFolderOf(file);
}

} // namespace rivo::sales
