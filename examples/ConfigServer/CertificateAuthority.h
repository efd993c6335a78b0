// A certificate authority for one run of a server: its keys live in memory and die with the object.
#pragma once

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <string>
#include <vector>

namespace Example {

struct OpenSslFree {
    void operator()(X509* certificate) const { X509_free(certificate); }
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};

using Certificate = std::unique_ptr<X509, OpenSslFree>;
using PrivateKey = std::unique_ptr<EVP_PKEY, OpenSslFree>;

// What a TLS server shows and proves.
struct ServerIdentity {
    Certificate certificate;
    PrivateKey key;
};

// When a certificate counts, in days from now; negative days lie in the past.
struct Validity {
    int fromDays = -1;
    int toDays = 30;
};

// An authority with an EC P-256 key and a self-signed certificate. Every operation throws std::runtime_error
// with OpenSSL's own reason when it can't do its work. Immutable after construction: any thread may use it.
class CertificateAuthority {
public:
    explicit CertificateAuthority(std::string const& name);

    // Makes a key and a certificate for `names`. A name of the form of an IPv4 or IPv6 address goes in as an
    // address, any other as a DNS name.
    ServerIdentity Issue(std::vector<std::string> const& names, Validity validity = {}) const;

    // The authority's certificate, as clients need it to trust what was issued.
    std::string CertificatePem() const;

    // Writes CertificatePem() to a file, replacing it.
    void WriteCertificate(std::string const& path) const;

private:
    ServerIdentity _identity;
};

}  // namespace Example
