#include "CertificateAuthority.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <fstream>
#include <stdexcept>

namespace Example {

namespace {

void Require(bool done, char const* what) {
    if (done) {
        return;
    }
    char reason[256] = "unknown reason";
    if (unsigned long const error = ERR_get_error(); error != 0) {
        ERR_error_string_n(error, reason, sizeof reason);
    }
    throw std::runtime_error(std::string(what) + ": " + reason);
}

PrivateKey MakeKey() {
    PrivateKey key(EVP_EC_gen("P-256"));
    Require(key != nullptr, "making a P-256 key");
    return key;
}

bool IsAddress(std::string const& name) {
    ASN1_OCTET_STRING* address = a2i_IPADDRESS(name.c_str());
    ASN1_OCTET_STRING_free(address);
    return address != nullptr;
}

// X509V3's text form separates entries by commas, so a name that holds one could smuggle in others.
std::string AlternativeNames(std::vector<std::string> const& names) {
    std::string text;
    for (std::string const& name : names) {
        if (name.empty() || name.find_first_of(", \t\r\n") != std::string::npos) {
            throw std::runtime_error("not a host name: '" + name + "'");
        }
        text += text.empty() ? "" : ",";
        text += (IsAddress(name) ? "IP:" : "DNS:") + name;
    }
    return text;
}

void AddExtension(X509* certificate, X509* issuer, int kind, std::string const& value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str());
    bool const added = extension != nullptr && X509_add_ext(certificate, extension, -1) == 1;
    X509_EXTENSION_free(extension);
    Require(added, "adding a certificate extension");
}

// A version 3 certificate with a random serial number, its subject named, not yet signed.
Certificate MakeCertificate(EVP_PKEY* key, std::string const& commonName, Validity validity) {
    constexpr long kSecondsADay = 24L * 60 * 60;
    Certificate certificate(X509_new());
    Require(certificate != nullptr, "making a certificate");
    X509_set_version(certificate.get(), X509_VERSION_3);

    unsigned char serial[16];
    Require(RAND_bytes(serial, sizeof serial) == 1, "drawing a serial number");
    serial[0] = static_cast<unsigned char>((serial[0] & 0x3F) | 0x40);  // positive and of full length
    BIGNUM* number = BN_bin2bn(serial, sizeof serial, nullptr);
    bool const numbered =
        number != nullptr && BN_to_ASN1_INTEGER(number, X509_get_serialNumber(certificate.get())) != nullptr;
    BN_free(number);
    Require(numbered, "setting a serial number");

    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), validity.fromDays * kSecondsADay);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), validity.toDays * kSecondsADay);
    auto const* text = reinterpret_cast<unsigned char const*>(commonName.c_str());
    Require(X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8, text,
                                       -1, -1, 0) == 1,
            "naming a certificate");
    Require(X509_set_pubkey(certificate.get(), key) == 1, "setting a public key");
    return certificate;
}

}  // namespace

CertificateAuthority::CertificateAuthority(std::string const& name) {
    _identity.key = MakeKey();
    _identity.certificate = MakeCertificate(_identity.key.get(), name, Validity{});
    X509* certificate = _identity.certificate.get();
    X509_set_issuer_name(certificate, X509_get_subject_name(certificate));
    AddExtension(certificate, certificate, NID_basic_constraints, "critical,CA:TRUE,pathlen:0");
    AddExtension(certificate, certificate, NID_key_usage, "critical,keyCertSign,cRLSign");
    AddExtension(certificate, certificate, NID_subject_key_identifier, "hash");
    Require(X509_sign(certificate, _identity.key.get(), EVP_sha256()) > 0,
            "signing the authority's certificate");
}

ServerIdentity CertificateAuthority::Issue(std::vector<std::string> const& names, Validity validity) const {
    if (names.empty()) {
        throw std::runtime_error("a server certificate needs a name");
    }
    ServerIdentity identity{nullptr, MakeKey()};
    identity.certificate = MakeCertificate(identity.key.get(), "Example configuration server", validity);
    X509* certificate = identity.certificate.get();
    X509* issuer = _identity.certificate.get();
    X509_set_issuer_name(certificate, X509_get_subject_name(issuer));
    AddExtension(certificate, issuer, NID_basic_constraints, "critical,CA:FALSE");
    AddExtension(certificate, issuer, NID_key_usage, "critical,digitalSignature");
    AddExtension(certificate, issuer, NID_ext_key_usage, "serverAuth");
    AddExtension(certificate, issuer, NID_subject_key_identifier, "hash");
    AddExtension(certificate, issuer, NID_authority_key_identifier, "keyid:always");
    AddExtension(certificate, issuer, NID_subject_alt_name, AlternativeNames(names));
    Require(X509_sign(certificate, _identity.key.get(), EVP_sha256()) > 0, "signing a server certificate");
    return identity;
}

std::string CertificateAuthority::CertificatePem() const {
    std::unique_ptr<BIO, int (*)(BIO*)> memory(BIO_new(BIO_s_mem()), BIO_free);
    Require(memory != nullptr && PEM_write_bio_X509(memory.get(), _identity.certificate.get()) == 1,
            "writing a certificate");
    char* text = nullptr;
    long const length = BIO_get_mem_data(memory.get(), &text);
    return {text, static_cast<size_t>(length)};
}

void CertificateAuthority::WriteCertificate(std::string const& path) const {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << CertificatePem();
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path);
    }
}

}  // namespace Example
