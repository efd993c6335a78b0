#include "Storage/File/IniFileImp.h"

#include <VelmorCore/Clock.h>

#include <algorithm>
#include <charconv>
#include <climits>

#include "Storage/File/IniText.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

constexpr char kWriteFunction[] = "Ubrix::CIniFileImpl::WriteString";

// Reads as a formatted stream extraction does: white space, a sign, digits, and the bound for a number out of
// range; but whatever locale the program has set.
long long LeadingNumber(std::string_view text) {
    std::size_t const first = text.find_first_not_of(" \t\n\v\f\r");
    if (first == std::string_view::npos) {
        return 0;
    }
    text.remove_prefix(first);
    bool const negative = text.front() == '-';
    if (text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') {
            return 0;
        }
    }
    long long number = 0;
    auto const result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range) {
        return negative ? LLONG_MIN : LLONG_MAX;
    }
    return number;
}

AString ToAString(std::string const& text) {
    return AString(text.data(), static_cast<int>(std::min<std::size_t>(text.size(), INT_MAX)));
}

void TellOfCut(CutKeys::Answer cut, char const* section, char const* key) {
    if (cut == CutKeys::Answer::New) {
        VC_LOG(Warning, kWriteFunction,
               "[%s] %s: an empty value, what follows a \"#\", and blanks at the ends won't come back",
               ForeignText(section).c_str(), ForeignText(key).c_str());
    } else if (cut == CutKeys::Answer::Last) {
        VC_LOG(Warning, kWriteFunction,
               "other values won't come back whole either; no more keys are told of");
    }
}

bool MarkIf(bool changed, bool& mark) {
    mark = mark || changed;
    return changed;
}

void Tell(bool* found, bool value) {
    if (found != nullptr) {
        *found = value;
    }
}

}  // namespace

IniFile* CreateIniFile(char const* path) {
    return new CIniFileImpl(path);
}

void TakePlainText(std::string_view text, IniLines& lines) {
    for (auto end = text.find_first_of("\r\n"); end != std::string_view::npos;
         end = text.find_first_of("\r\n")) {
        if (end > 0) {
            lines.Append(text.substr(0, end));
        }
        text.remove_prefix(end + 1);
    }
}

CIniFileImpl::CIniFileImpl(char const* path, bool (*isOtherForm)(std::string_view content))
    : _path(path != nullptr ? path : "") {
    long long const start = CTime::GetTimeTick();
    {
        Platform::ScopedLock lock(_lock);
        std::string content;
        if (ReadContent(content) == Platform::FileAnswer::Given) {
            bool const hasForm = isOtherForm != nullptr;
            if (!hasForm || !isOtherForm(content)) {
                IniLines lines;
                TakePlainText(content, lines);
                Take(lines);
                _edited = hasForm;  // A save would change the file's form.
            }
        }
    }
    long long const end = CTime::GetTimeTick();
    VC_LOG_CONSOLE(Info, "Ubrix::CIniFileImpl::CIniFileImpl", "load config file cost %lld us", end - start);
}

CIniFileImpl::~CIniFileImpl() {
    SaveAtEnd();
}

bool CIniFileImpl::Load() {
    Platform::ScopedLock lock(_lock);
    return Reload();
}

bool CIniFileImpl::Save() {
    SaveChecked();
    return true;
}

AString CIniFileImpl::ReadString(char const* section, char const* key, char const* defaultValue,
                                 bool* found) {
    if (section == nullptr || key == nullptr) {
        VC_LOG(Error, "Ubrix::CIniFileImpl::ReadString", "s == NULL || key == NULL");
        Tell(found, false);
        return AString();
    }
    Platform::ScopedLock lock(_lock);
    CatchUp();
    std::string value;
    bool const present = _lines.Read(section, key, value) == IniLines::Lookup::Found;
    Tell(found, present);
    return present ? ToAString(value) : AString(defaultValue);
}

AString CIniFileImpl::ReadString(char const* section, char const* key, char const* defaultValue) {
    bool found = false;
    return ReadString(section, key, defaultValue, &found);
}

int CIniFileImpl::ReadInt(char const* section, char const* key, int defaultValue, bool* found) {
    AString const text = ReadString(section, key, "", found);
    if (text.Empty()) {
        return defaultValue;
    }
    return static_cast<int>(std::clamp<long long>(LeadingNumber(text.CString()), INT_MIN, INT_MAX));
}

int CIniFileImpl::ReadInt(char const* section, char const* key, int defaultValue) {
    bool found = false;
    return ReadInt(section, key, defaultValue, &found);
}

long long CIniFileImpl::ReadInt64(char const* section, char const* key, long long defaultValue, bool* found) {
    AString const text = ReadString(section, key, "", found);
    return text.Empty() ? defaultValue : LeadingNumber(text.CString());
}

long long CIniFileImpl::ReadInt64(char const* section, char const* key, long long defaultValue) {
    bool found = false;
    return ReadInt64(section, key, defaultValue, &found);
}

bool CIniFileImpl::WriteString(char const* section, char const* key, char const* value) {
    if (section == nullptr || key == nullptr) {
        return false;
    }
    std::string_view const text = value != nullptr ? value : "";
    if (!IniText::CanBeSection(section) || !IniText::CanBeKey(key) || !IniText::CanBeValue(text)) {
        VC_LOG(Error, kWriteFunction, "no line can hold [%s] %s with this value: refused",
               ForeignText(section).c_str(), ForeignText(key).c_str());
        return false;
    }
    auto cut = CutKeys::Answer::Known;
    {
        Platform::ScopedLock lock(_lock);
        CatchUp();
        if (!IniText::ComesBackWhole(text)) {
            cut = _cutKeys.Add(section, key);
        }
        _lines.Write(section, key, text);
        _edited = true;
    }
    TellOfCut(cut, section, key);
    return true;
}

bool CIniFileImpl::WriteInt(char const* section, char const* key, int value) {
    return WriteString(section, key, std::to_string(value).c_str());
}

bool CIniFileImpl::WriteInt64(char const* section, char const* key, long long value) {
    return WriteString(section, key, std::to_string(value).c_str());
}

void CIniFileImpl::GetKeys(char const* section, AArray* keys) {
    if (section == nullptr || keys == nullptr) {
        return;
    }
    Platform::ScopedLock lock(_lock);
    CatchUp();
    for (std::string const& key : _lines.Keys(section)) {
        keys->Add(ToAString(key));
    }
}

bool CIniFileImpl::HasKey(char const* section, char const* key) {
    Platform::ScopedLock lock(_lock);
    CatchUp();
    return section != nullptr && key != nullptr && _lines.HasLineWithPrefix(section, key);
}

bool CIniFileImpl::RemoveSection(char const* section) {
    Platform::ScopedLock lock(_lock);
    CatchUp();
    return section != nullptr && MarkIf(_lines.RemoveSection(section), _edited);
}

bool CIniFileImpl::RemoveKey(char const* section, char const* key) {
    Platform::ScopedLock lock(_lock);
    CatchUp();
    return section != nullptr && key != nullptr && MarkIf(_lines.RemoveKey(section, key), _edited);
}

bool CIniFileImpl::Clear() {
    Platform::ScopedLock lock(_lock);
    CatchUp();
    _lines.Clear();
    _edited = true;
    _cleared = !IsKnown();
    return true;
}

void CIniFileImpl::Swap(IniLines& lines) {
    Platform::ScopedLock lock(_lock);
    _lines.Swap(lines);
    _edited = true;
    _cleared = !IsKnown();
}

}  // namespace Ubrix
