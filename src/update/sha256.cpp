#include "sha256.h"

#include <QLibrary>

#include <openssl/evp.h>

namespace {

// The functions used, taken from the library at run time; the header gives
// their exact types.
struct Crypto
{
    decltype(&::EVP_MD_CTX_new) newContext = nullptr;
    decltype(&::EVP_MD_CTX_free) freeContext = nullptr;
    decltype(&::EVP_sha256) sha256 = nullptr;
    decltype(&::EVP_DigestInit_ex) init = nullptr;
    decltype(&::EVP_DigestUpdate) update = nullptr;
    decltype(&::EVP_DigestFinal_ex) finish = nullptr;

    bool isComplete() const { return newContext && freeContext && sha256 && init && update && finish; }
};

template<class Function> void resolve(QLibrary &library, const char *name, Function &function)
{
    function = reinterpret_cast<Function>(library.resolve(name));
}

const Crypto &crypto()
{
    // Once per process, on the first hash; the library stays loaded.
    static const Crypto loaded = []() {
        Crypto functions;
        QLibrary library(QStringLiteral("crypto"), OPENSSL_VERSION_MAJOR);
        if (!library.load())
            return functions;
        resolve(library, "EVP_MD_CTX_new", functions.newContext);
        resolve(library, "EVP_MD_CTX_free", functions.freeContext);
        resolve(library, "EVP_sha256", functions.sha256);
        resolve(library, "EVP_DigestInit_ex", functions.init);
        resolve(library, "EVP_DigestUpdate", functions.update);
        resolve(library, "EVP_DigestFinal_ex", functions.finish);
        return functions.isComplete() ? functions : Crypto();
    }();
    return loaded;
}

} // namespace

Sha256::Sha256()
    : m_fallback(QCryptographicHash::Sha256)
{
    if (crypto().isComplete())
        m_context = crypto().newContext();
    reset();
}

Sha256::~Sha256()
{
    if (m_context)
        crypto().freeContext(m_context);
}

void Sha256::reset()
{
    if (m_context && crypto().init(m_context, crypto().sha256(), nullptr) == 1)
        return;
    // A context that cannot be set up hands the work to Qt's hash for good.
    if (m_context) {
        crypto().freeContext(m_context);
        m_context = nullptr;
    }
    m_fallback.reset();
}

void Sha256::addData(const char *data, qint64 size)
{
    if (m_context)
        crypto().update(m_context, data, size_t(size));
    else
        m_fallback.addData(data, int(size));
}

QByteArray Sha256::resultHex()
{
    QByteArray result;
    if (m_context) {
        unsigned char digest[EVP_MAX_MD_SIZE];
        unsigned int length = 0;
        crypto().finish(m_context, digest, &length);
        result = QByteArray(reinterpret_cast<const char *>(digest), int(length)).toHex();
    } else {
        result = m_fallback.result().toHex();
    }
    reset();
    return result;
}
