#include "Storage/Bundle/IniBundle.h"

#include <VelmorCore/File.h>

#include <string>
#include <string_view>

#include "Base/Container/AsciiText.h"
#include "Storage/File/IniText.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

std::string_view BareName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

void NotFound(bool* found) {
    if (found != nullptr) {
        *found = false;
    }
}

}  // namespace

IniBundle::IniBundle() {
    char const* cache = CPath::GetCachePath();
    AString path;
    if (!AString::IsNullOrEmpty(cache)) {
        CPath::GetSubPath(path, cache, "Velmor.config");
    }
    Open(path.CString());
}

IniBundle::IniBundle(char const* path) {
    Open(path);
}

void IniBundle::Open(char const* path) {
    if (AString::IsNullOrEmpty(path)) {
        VC_LOG(Info, "Ubrix::IniBundle::IniBundle", "CachePath is empty, do not use bundle in JNI_ONLoad!!!");
        return;
    }
    // The key store keeps a file's key under the file's bare name.
    std::string_view const name = BareName(path);
    if (!IniText::CanBeKey(name)) {
        VC_LOG(Error, "Ubrix::IniBundle::IniBundle", "the key store can't hold a key for \"%s\": refused",
               ForeignText(name).c_str());
        return;
    }
    _file.reset(CreateEncryptedIniFile(path));
    _file->Load();
}

bool IniBundle::SaveIf(bool changed) {
    return changed && _file->Save();
}

bool IniBundle::Set(char const* /*section*/, Value const& /*values*/) {
    return false;
}

bool IniBundle::Set(Value const& /*sections*/) {
    return false;
}

bool IniBundle::Set(char const* /*key*/, bool /*value*/) {
    return false;
}

bool IniBundle::Set(char const* /*key*/, char const* /*value*/) {
    return false;
}

bool IniBundle::Set(char const* /*key*/, long long /*value*/) {
    return false;
}

bool IniBundle::Set(char const* /*key*/, int /*value*/) {
    return false;
}

bool IniBundle::Set(char const* section, char const* key, bool value) {
    return SaveIf(SetNoSave(section, key, value));
}

bool IniBundle::Set(char const* section, char const* key, char const* value) {
    return SaveIf(SetNoSave(section, key, value));
}

bool IniBundle::Set(char const* section, char const* key, int value) {
    return SaveIf(SetNoSave(section, key, value));
}

bool IniBundle::Set(char const* section, char const* key, long long value) {
    return SaveIf(SetNoSave(section, key, value));
}

bool IniBundle::Get(char const* /*section*/, char const* /*key*/, Value& /*value*/) {
    return false;
}

bool IniBundle::Get(char const* /*section*/, Value& /*values*/) {
    return false;
}

bool IniBundle::Get(char const* /*key*/, bool defaultValue) {
    return defaultValue;
}

AString IniBundle::Get(char const* /*key*/, char const* defaultValue) {
    return AString(defaultValue);
}

int IniBundle::Get(char const* /*key*/, int defaultValue) {
    return defaultValue;
}

long long IniBundle::Get(char const* /*key*/, long long defaultValue) {
    return defaultValue;
}

bool IniBundle::Get(char const* section, char const* key, bool defaultValue, bool* found) {
    std::string const text = UpperAscii(Get(section, key, "", found).CString());
    // "1" is what a bool is stored as; "TRUE" is in files of older writers.
    return text.empty() ? defaultValue : text == "TRUE" || text == "1";
}

AString IniBundle::Get(char const* section, char const* key, char const* defaultValue, bool* found) {
    if (_file == nullptr) {
        NotFound(found);
        return AString(defaultValue);
    }
    return _file->ReadString(section, key, defaultValue, found);
}

int IniBundle::Get(char const* section, char const* key, int defaultValue, bool* found) {
    if (_file == nullptr) {
        NotFound(found);
        return defaultValue;
    }
    return _file->ReadInt(section, key, defaultValue, found);
}

long long IniBundle::Get(char const* section, char const* key, long long defaultValue, bool* found) {
    if (_file == nullptr) {
        NotFound(found);
        return defaultValue;
    }
    return _file->ReadInt64(section, key, defaultValue, found);
}

bool IniBundle::RemoveSection(char const* section) {
    return SaveIf(RemoveSectionNoSave(section));
}

bool IniBundle::RemoveKey(char const* section, char const* key) {
    return _file == nullptr || SaveIf(RemoveKeyNoSave(section, key));
}

void IniBundle::GetKeys(char const* section, AArray* keys) {
    if (_file != nullptr) {
        _file->GetKeys(section, keys);
    }
}

bool IniBundle::HasKey(char const* section, char const* key) {
    return _file != nullptr && _file->HasKey(section, key);
}

bool IniBundle::Clear() {
    return SaveIf(ClearNoSave());
}

bool IniBundle::Load() {
    return _file != nullptr && _file->Load();
}

bool IniBundle::Save() {
    return _file != nullptr && _file->Save();
}

bool IniBundle::SetNoSave(char const* section, char const* key, bool value) {
    return SetNoSave(section, key, value ? 1 : 0);
}

bool IniBundle::SetNoSave(char const* section, char const* key, char const* value) {
    return _file != nullptr && _file->WriteString(section, key, value);
}

bool IniBundle::SetNoSave(char const* section, char const* key, long long value) {
    return _file != nullptr && _file->WriteInt64(section, key, value);
}

bool IniBundle::SetNoSave(char const* section, char const* key, int value) {
    return _file != nullptr && _file->WriteInt(section, key, value);
}

bool IniBundle::RemoveSectionNoSave(char const* section) {
    return _file != nullptr && _file->RemoveSection(section);
}

bool IniBundle::RemoveKeyNoSave(char const* section, char const* key) {
    return _file == nullptr || _file->RemoveKey(section, key);
}

bool IniBundle::ClearNoSave() {
    return _file != nullptr && _file->Clear();
}

bool IniBundle::IsUnread() {
    return _file != nullptr && _file->IsUnread();
}

void IniBundle::Swap(IniLines& lines) {
    if (_file != nullptr) {
        _file->Swap(lines);
    }
}

}  // namespace Ubrix
