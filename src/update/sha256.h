#ifndef SHA256_H
#define SHA256_H

#include <QByteArray>
#include <QCryptographicHash>

typedef struct evp_md_ctx_st EVP_MD_CTX;

// SHA-256 fed piece by piece, at the speed of the processor's own
// instructions where it has them, so that hashing an installer on its way to
// disk does not slow the download. The crypto library behind it is loaded by
// the first hash, not with the program: most starts hash nothing. Without
// that library the hash is Qt's own, slower but the same.
class Sha256
{
public:
    Sha256();
    ~Sha256();
    Sha256(const Sha256 &) = delete;
    Sha256 &operator=(const Sha256 &) = delete;

    void reset();
    void addData(const char *data, qint64 size);
    // Lower-case hex of everything added since the last reset.
    QByteArray resultHex();
    // Whether the crypto library does the work (false: Qt's own hash).
    bool isAccelerated() const { return m_context != nullptr; }

private:
    EVP_MD_CTX *m_context = nullptr;
    QCryptographicHash m_fallback;
};

#endif // SHA256_H
