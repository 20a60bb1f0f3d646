#ifndef SHA256_H
#define SHA256_H

#include <QByteArray>

typedef struct evp_md_ctx_st EVP_MD_CTX;

// SHA-256 fed piece by piece, at the speed of the processor's own
// instructions where it has them, so that hashing an installer on its way to
// disk does not slow the download.
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

private:
    EVP_MD_CTX *m_context;
};

#endif // SHA256_H
