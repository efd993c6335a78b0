#include "Storage/File/EncryptedIniFileImp.h"

#include <VelmorCore/File.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "BuildConstants.h"
#include "Platform/Boundary.h"
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
// With the separator it is no file's name.
constexpr char kElsewhere[] = "elsewhere/";
constexpr std::size_t kEncipheredOverhead = 17;

// Wipes a text or byte list when it goes out of scope.
template <typename Bytes>
class WipeContentAtExit {
public:
    explicit WipeContentAtExit(Bytes& bytes) : _bytes(bytes) {}
    ~WipeContentAtExit() { Crypto::Wipe(_bytes.data(), _bytes.size()); }
    WipeContentAtExit(WipeContentAtExit const&) = delete;
    WipeContentAtExit& operator=(WipeContentAtExit const&) = delete;

private:
    Bytes& _bytes;
};

// A fresh key and what the server finds it again by. False if there is none to be had.
struct FreshKey {
    FreshKey() { Crypto::MakeEcdhKey(VELMORCORE_SERVER_PUBLIC_KEY, bytes, kKeySize, publicKey); }
    bool IsMade() const {
        return std::any_of(publicKey, publicKey + sizeof publicKey,
                           [](unsigned char byte) { return byte != 0; });
    }

    unsigned char bytes[kKeySize] = {};
    unsigned char publicKey[kEncipheredPublicKeySize] = {};
    Crypto::WipeAtExit<unsigned char[kKeySize]> const wiper{bytes};
};

// A missing or damaged text leaves zeros in the key, which the cipher refuses. `plain` has the body's size.
bool DecipherWith(std::string const& keyText, std::string_view body, std::string& plain) {
    unsigned char key[kKeySize] = {};
    Crypto::WipeAtExit<unsigned char[kKeySize]> const keyWiper(key);
    std::string decoded = Crypto::Base64Decode(keyText);
    WipeContentAtExit<std::string> const wiper(decoded);
    std::copy_n(decoded.begin(), std::min(decoded.size(), kKeySize), key);
    plain.resize(body.size());
    int size = static_cast<int>(body.size());
    if (!Crypto::zk_symmetry_decrypt2(body.data(), size, key, plain.data(), &size)) {
        return false;
    }
    plain.resize(static_cast<std::size_t>(size));
    return true;
}

void TakeLines(std::string_view rest, IniLines& lines) {
    while (!rest.empty()) {
        std::size_t const end = std::min(rest.find('\n'), rest.size());
        if (end > 0) {
            lines.Append(rest.substr(0, end));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

// Text holds no NUL; every head of an enciphered file does.
bool IsNoText(std::string_view content) {
    return content.find('\0') != std::string_view::npos;
}

}  // namespace

IniFile* CreateEncryptedIniFile(char const* path) {
    return new EncryptedIniFileImpl(path);
}

EncryptedIniFileImpl::EncryptedIniFileImpl(char const* path) : CIniFileImpl(path, IsNoText) {}

EncryptedIniFileImpl::~EncryptedIniFileImpl() {
    SaveAtEnd();
}

std::string EncryptedIniFileImpl::BareName() const {
    return _path.substr(_path.rfind('/') + 1);
}

bool EncryptedIniFileImpl::IsInCache() const {
    char const* const cache = CPath::GetCachePath();
    std::string const directory = _path.substr(0, _path.rfind('/') + 1);
    // Where the texts tell, a disk that doesn't answer can't mislead.
    return cache != nullptr &&
           (directory == cache ||
            Platform::IsSameDirectory(directory.empty() ? "." : directory.c_str(), cache));
}

std::string EncryptedIniFileImpl::EntryName() const {
    char const* const cache = CPath::GetCachePath();
    bool const hasNamesake = cache != nullptr && Platform::PathExists((cache + BareName()).c_str());
    return hasNamesake && !IsInCache() ? kElsewhere + BareName() : BareName();
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

char const* EncryptedIniFileImpl::WriteFile() {
    SecurityStore& store = *SecurityStore::GetInstance();
    SecurityStore::Turn const turn;
    if (!turn.IsHeld()) {
        return "another process has the key store, or it can't be reached";
    }
    if (char const* const obstacle = MakeWay()) {
        return obstacle;
    }
    std::string plain = JoinedLines();
    WipeContentAtExit<std::string> const plainWiper(plain);
    if (plain.size() > kMaxIniFileSize - kEncipheredHeadSize - kEncipheredOverhead) {
        return "it is too large to be read again";
    }
    FreshKey const key;
    if (!key.IsMade()) {
        return "no key can be agreed on";
    }
    int const plainSize = static_cast<int>(plain.size());
    int size = Crypto::zk_symmetry_encrypt2_length(plainSize);
    std::vector<unsigned char> body(static_cast<std::size_t>(size));
    Crypto::zk_symmetry_encrypt2(plain.data(), plainSize, key.bytes, body.data(), &size);
    unsigned char head[kEncipheredHeadSize];
    MakeEncipheredHead(key.publicKey, body.data(), static_cast<unsigned int>(size), head);

    FileReplacement replacement(_path);
    replacement.Write(head, sizeof head);
    replacement.Write(body.data(), body.size());
    StoredKeys keys;
    keys.current = Crypto::Base64Encode(key.bytes, kKeySize);
    return replacement.Finish() ? Exchange(store, replacement, keys) : replacement.Obstacle();
}

char const* EncryptedIniFileImpl::Exchange(SecurityStore& store, FileReplacement& replacement,
                                           StoredKeys& keys) {
    std::string const entry = EntryName();
    StoredKeys before;
    if (!store.ReadKeys(entry.c_str(), before)) {
        return "the key store can't be read now";
    }
    KeepForNamesake(store, before);
    keys.earlier = KeyOfFile(before);
    if (!store.WriteKeys(entry.c_str(), keys)) {
        return "its key can't be stored";
    }
    if (!replacement.Commit()) {
        store.WriteKeys(entry.c_str(), before);
        return replacement.Obstacle();
    }
    _known.current.swap(keys.current);
    return nullptr;
}

void EncryptedIniFileImpl::KeepForNamesake(SecurityStore& store, StoredKeys const& before) const {
    if (before.current.empty() || Platform::PathExists(_path.c_str()) || !IsInCache()) {
        return;
    }
    std::string const entry = kElsewhere + BareName();
    StoredKeys elsewhere;
    if (store.ReadKeys(entry.c_str(), elsewhere) && elsewhere.current.empty()) {
        store.WriteKeys(entry.c_str(), before);
    }
}

std::string EncryptedIniFileImpl::KeyOfFile(StoredKeys const& keys) const {
    // Nobody but this object has saved since.
    if (keys.current == _known.current || keys.earlier.empty()) {
        return keys.current;
    }
    std::string bytes;
    if (Platform::ReadWholeFile(_path.c_str(), kMaxIniFileSize, bytes) != Platform::FileAnswer::Given) {
        return keys.current;
    }
    EncipheredContent const content = CheckEnciphered(bytes);
    std::string plain;
    WipeContentAtExit<std::string> const wiper(plain);
    return !DecipherWith(keys.current, content.body, plain) && DecipherWith(keys.earlier, content.body, plain)
               ? keys.earlier
               : keys.current;
}

EncipheredContent EncryptedIniFileImpl::ReadFile() {
    EncipheredContent unread;
    unread.fault = EncipheredFault::Unreadable;
    return AtBoundary(unread, [this]() VC_REQUIRES(_lock) { return ReadWithKeys(); });
}

EncipheredContent EncryptedIniFileImpl::ReadWithKeys() {
    SecurityStore::Turn const turn;
    EncipheredContent content;
    std::string bytes;
    auto const answer = ReadContent(bytes);
    if (answer != Platform::FileAnswer::Given) {
        content.fault =
            answer == Platform::FileAnswer::Absent ? EncipheredFault::Absent : EncipheredFault::Unreadable;
        return content;
    }
    content = CheckEnciphered(bytes);
    if (content.fault == EncipheredFault::None) {
        content.fault = Open(content.body);
    }
    content.body = {};
    if (content.fault == EncipheredFault::None || TakePlain(bytes)) {
        return content;
    }
    // Without the turn the file and its keys may just have been of two saves.
    Leave(content.fault == EncipheredFault::Unreadable ||
          (content.fault == EncipheredFault::Cipher && !turn.IsHeld()));
    return content;
}

EncipheredFault EncryptedIniFileImpl::Open(std::string_view body) {
    SecurityStore& store = *SecurityStore::GetInstance();
    // Under its bare name lies the key of a file elsewhere that was saved before its namesake came to be.
    for (std::string const& entry : {EntryName(), BareName()}) {
        StoredKeys keys;
        if (!store.ReadKeys(entry.c_str(), keys)) {
            return EncipheredFault::Unreadable;
        }
        if (Decipher(body, keys)) {
            return EncipheredFault::None;
        }
    }
    return EncipheredFault::Cipher;
}

bool EncryptedIniFileImpl::TakePlain(std::string_view bytes) {
    if (IsNoText(bytes)) {
        return false;
    }
    if (!IsKnown()) {
        IniLines lines;
        TakePlainText(bytes, lines);
        Take(lines);
        _edited = true;
    }
    return true;
}

bool EncryptedIniFileImpl::Decipher(std::string_view body, StoredKeys const& keys) {
    std::string plain;
    WipeContentAtExit<std::string> const wiper(plain);
    bool const fitsCurrent = DecipherWith(keys.current, body, plain);
    if (!fitsCurrent && (keys.earlier.empty() || !DecipherWith(keys.earlier, body, plain))) {
        return false;
    }
    IniLines lines;
    TakeLines(plain, lines);
    std::string known = fitsCurrent ? keys.current : "";
    Take(lines);
    _known.current.swap(known);
    return true;
}

bool EncryptedIniFileImpl::Reload() {
    return ReadFile().fault == EncipheredFault::None;
}

bool EncryptedIniFileImpl::Load() {
    EncipheredContent content;
    {
        Platform::ScopedLock lock(_lock);
        content = ReadFile();
    }
    LogFault(content);
    return content.fault == EncipheredFault::None;
}

void EncryptedIniFileImpl::LogFault(EncipheredContent const& content) const {
    char const* const function = "Ubrix::EncryptedIniFileImpl::Load";
    switch (content.fault) {
        case EncipheredFault::None:
        case EncipheredFault::Unreadable:
            break;
        case EncipheredFault::Absent:
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
