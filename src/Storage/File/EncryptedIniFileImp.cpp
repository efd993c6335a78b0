#include "Storage/File/EncryptedIniFileImp.h"

#include <algorithm>
#include <climits>
#include <string>
#include <string_view>

#include "BuildConstants.h"
#include "Security/Crypto/Base64.h"
#include "Security/Crypto/Ecdh.h"
#include "Security/Crypto/Tea.h"
#include "Security/Crypto/Wipe.h"
#include "Security/SecurityStore/SecurityStore.h"
#include "Storage/File/FileReplacement.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

constexpr std::size_t kKeySize = 16;

// Wipes a text or byte list when it goes out of scope.
template <typename Bytes>
class WipeContentAtExit {
public:
    explicit WipeContentAtExit(Bytes& bytes) : _bytes(bytes) {}
    ~WipeContentAtExit() { Wipe(_bytes.data(), _bytes.size()); }
    WipeContentAtExit(WipeContentAtExit const&) = delete;
    WipeContentAtExit& operator=(WipeContentAtExit const&) = delete;

private:
    Bytes& _bytes;
};

Platform::RecursiveMutex& ExchangeLock() {
    static Platform::RecursiveMutex* const lock = new Platform::RecursiveMutex();
    return *lock;
}

}  // namespace

IniFile* CreateEncryptedIniFile(char const* path) {
    return new EncryptedIniFileImpl(path);
}

EncryptedIniFileImpl::EncryptedIniFileImpl(char const* path) : CIniFileImpl(path) {}

EncryptedIniFileImpl::~EncryptedIniFileImpl() {
    EncryptedIniFileImpl::Save();
    SkipSaveAtEnd();
}

char const* EncryptedIniFileImpl::EntryName() const {
    std::size_t const separator = _path.rfind('/');
    return _path.c_str() + (separator == std::string::npos ? 0 : separator + 1);
}

std::string EncryptedIniFileImpl::JoinedLines() const {
    std::size_t size = 0;
    _lines.ForEach([&](std::string const& line) { size += line.size() + 1; });
    // Room for all at once: growing would leave unwiped copies behind.
    std::string text;
    text.reserve(size);
    _lines.ForEach([&](std::string const& line) {
        text += line;
        text += '\n';
    });
    if (!text.empty()) {
        text.pop_back();
    }
    return text;
}

void EncryptedIniFileImpl::TakePlainText(char const* text, std::size_t size) {
    _lines.Clear();
    std::string_view rest(text, size);
    while (!rest.empty()) {
        std::size_t const end = std::min(rest.find('\n'), rest.size());
        if (end > 0) {
            _lines.Append(rest.substr(0, end));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

bool EncryptedIniFileImpl::Save() {
    Platform::ScopedLock lock(_lock);
    std::string plain = JoinedLines();
    WipeContentAtExit<std::string> const plainWiper(plain);
    int const plainSize = plain.size() > INT_MAX ? -1 : static_cast<int>(plain.size());
    int size = zk_symmetry_encrypt2_length(plainSize);
    if (size == 0) {
        return true;
    }
    // Without an agreement both stay zero: the file is then enciphered under a key that everybody knows.
    unsigned char key[kKeySize] = {};
    unsigned char publicKey[kEncipheredPublicKeySize] = {};
    WipeAtExit<unsigned char[kKeySize]> const keyWiper(key);
    MakeEcdhKey(VELMORCORE_SERVER_PUBLIC_KEY, key, kKeySize, publicKey);

    std::vector<unsigned char> body(static_cast<std::size_t>(size));
    zk_symmetry_encrypt2(plain.data(), plainSize, key, body.data(), &size);
    unsigned char head[kEncipheredHeadSize];
    MakeEncipheredHead(publicKey, body.data(), static_cast<unsigned int>(size), head);

    FileReplacement replacement(_path);
    replacement.Write(head, sizeof head);
    replacement.Write(body.data(), body.size());
    if (replacement.Finish()) {
        Exchange(replacement, key);
    }
    return true;
}

void EncryptedIniFileImpl::Exchange(FileReplacement& replacement, unsigned char const* key) const {
    std::string text = Base64Encode(key, kKeySize);
    WipeContentAtExit<std::string> const wiper(text);
    SecurityStore& store = *SecurityStore::GetInstance();

    Platform::ScopedLock exchange(ExchangeLock());
    AString const before = store.Get(EntryName(), "");
    if (store.SetChecked(EntryName(), text.c_str()) && !replacement.Commit()) {
        store.Set(EntryName(), before.CString());
    }
}

EncipheredContent EncryptedIniFileImpl::ReadContent(unsigned char* key) const {
    Platform::ScopedLock exchange(ExchangeLock());
    EncipheredContent content = ReadEncipheredFile(_path.c_str());
    if (content.fault == EncipheredFault::None) {
        // A missing or damaged entry leaves zeros in the key, which the cipher refuses.
        AString const entry = SecurityStore::GetInstance()->Get(EntryName(), "");
        std::string decoded = Base64Decode(entry.CString());
        WipeContentAtExit<std::string> const wiper(decoded);
        std::copy_n(decoded.begin(), std::min(decoded.size(), kKeySize), key);
    }
    return content;
}

EncipheredContent EncryptedIniFileImpl::LoadLocked() {
    unsigned char key[kKeySize] = {};
    WipeAtExit<unsigned char[kKeySize]> const keyWiper(key);
    EncipheredContent content = ReadContent(key);
    if (content.fault != EncipheredFault::None) {
        return content;
    }
    std::vector<char> plain(content.body.size());
    WipeContentAtExit<std::vector<char>> const plainWiper(plain);
    int size = static_cast<int>(plain.size());
    if (zk_symmetry_decrypt2(content.body.data(), size, key, plain.data(), &size)) {
        TakePlainText(plain.data(), static_cast<std::size_t>(size));
    } else {
        content.fault = EncipheredFault::Cipher;
    }
    return content;
}

bool EncryptedIniFileImpl::Load() {
    EncipheredContent content;
    {
        Platform::ScopedLock lock(_lock);
        content = LoadLocked();
    }
    LogFault(content);
    return content.fault == EncipheredFault::None;
}

void EncryptedIniFileImpl::LogFault(EncipheredContent const& content) const {
    char const* const function = "Ubrix::EncryptedIniFileImpl::Load";
    switch (content.fault) {
        case EncipheredFault::None:
            break;
        case EncipheredFault::CantOpen:
            VC_LOG(Info, function, "config file %s is not exist", ForeignText(_path.c_str()).c_str());
            break;
        case EncipheredFault::ShortBaseHead:
            VC_LOG(Error, function, "config file read headbase failed");
            break;
        case EncipheredFault::Magic:
            VC_LOG(Error, function, "config file magic not match file magic is %d, program magic is %d",
                   content.number, kEncipheredMagic);
            break;
        case EncipheredFault::Version:
            VC_LOG(Error, function,
                   "config file version not match, file version is %d, program version is %d", content.number,
                   kEncipheredVersion);
            break;
        case EncipheredFault::BadExtendedHead:
            VC_LOG(Error, function, "config file read headext failed");
            break;
        case EncipheredFault::EncryptionKind:
            VC_LOG(Error, function, "config file Encytion is not TEA, encyption is %d", content.number);
            break;
        case EncipheredFault::PublicKeyLength:
            VC_LOG(Error, function, "config file PubKeyLen is not %d, PubKeyLen is %d",
                   kEncipheredPublicKeySize, content.number);
            break;
        case EncipheredFault::DigestLength:
            VC_LOG(Error, function, "config file Md5Len is not %d, Md5Len is %d", kEncipheredDigestSize,
                   content.number);
            break;
        case EncipheredFault::ShortBody:
            VC_LOG(Error, function, "config file read body failed!");
            break;
        case EncipheredFault::Digest:
            VC_LOG(Error, function, "config file md5 check failed!");
            break;
        case EncipheredFault::Cipher:
            VC_LOG(Error, function, "config file zk_symmetry_decrypt2 failed!");
            break;
    }
}

}  // namespace Ubrix
