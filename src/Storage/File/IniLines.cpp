#include "Storage/File/IniLines.h"

namespace Ubrix {

namespace {

std::string_view Trim(std::string_view text) {
    std::size_t const first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool BeginsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool EndsSection(std::string_view line) {
    return BeginsWith(line, "[");
}

bool IsHeaderOf(std::string_view line, std::string_view section) {
    if (!EndsSection(line)) {
        return false;
    }
    std::size_t const close = line.find(']');
    return close != std::string_view::npos && Trim(line.substr(1, close - 1)) == section;
}

// The place of the "=" if `line` is the key's line.
std::size_t KeyLineEquals(std::string_view line, std::string_view key) {
    std::size_t const place = line.find(key);
    if (place == std::string_view::npos) {
        return place;
    }
    std::size_t const equals = line.find('=', place);
    if (equals == std::string_view::npos || Trim(line.substr(0, equals)) != key) {
        return std::string_view::npos;
    }
    return equals;
}

std::string KeyLine(std::string_view key, std::string_view value) {
    std::string line(key);
    line += '=';
    line += value;
    return line;
}

}  // namespace

std::size_t IniLines::FindHeader(std::string_view section, std::size_t from) const {
    for (std::size_t i = from; i < _lines.size(); ++i) {
        if (IsHeaderOf(_lines[i], section)) {
            return i;
        }
    }
    return kNone;
}

std::size_t IniLines::EndOfSection(std::size_t header) const {
    std::size_t end = header + 1;
    while (end < _lines.size() && !EndsSection(_lines[end])) {
        ++end;
    }
    return end;
}

std::size_t IniLines::FindKey(std::size_t header, std::string_view key) const {
    for (std::size_t i = header + 1; i < _lines.size() && !EndsSection(_lines[i]); ++i) {
        if (KeyLineEquals(_lines[i], key) != std::string_view::npos) {
            return i;
        }
    }
    return kNone;
}

std::size_t IniLines::FindKeyAnywhere(std::string_view section, std::string_view key) const {
    std::size_t header = FindHeader(section, 0);
    while (header != kNone) {
        std::size_t const line = FindKey(header, key);
        if (line != kNone) {
            return line;
        }
        header = FindHeader(section, header + 1);
    }
    return kNone;
}

IniLines::Lookup IniLines::Read(std::string_view section, std::string_view key, std::string& value) const {
    std::size_t const found = FindKeyAnywhere(section, key);
    if (found == kNone) {
        return Lookup::Absent;
    }
    std::string_view const line = _lines[found];
    std::size_t const behind = KeyLineEquals(line, key) + 1;
    if (behind == line.size()) {
        return Lookup::Absent;
    }
    std::size_t const comment = line.find('#', behind);
    value = Trim(line.substr(behind, comment == std::string_view::npos ? comment : comment - behind));
    return Lookup::Found;
}

void IniLines::Write(std::string_view section, std::string_view key, std::string_view value) {
    std::size_t const header = FindHeader(section, 0);
    if (header == kNone) {
        std::string head("[");
        head += section;
        head += ']';
        _lines.emplace_back();
        _lines.push_back(std::move(head));
        _lines.push_back(KeyLine(key, value));
        return;
    }
    std::size_t const found = FindKey(header, key);
    if (found != kNone) {
        std::string& line = _lines[found];
        std::size_t const behind = KeyLineEquals(line, key) + 1;
        std::size_t const comment = line.find('#', behind);
        line.replace(behind, comment == std::string::npos ? comment : comment - behind, value);
        return;
    }
    std::size_t place = EndOfSection(header);
    // In front of the section's last line: where edits made the section, that is the empty line which
    // separates it from the next.
    if (place < _lines.size() && place > header + 1) {
        --place;
    }
    _lines.insert(_lines.begin() + static_cast<std::ptrdiff_t>(place), KeyLine(key, value));
}

std::vector<std::string> IniLines::Keys(std::string_view section) const {
    std::vector<std::string> keys;
    std::size_t const header = FindHeader(section, 0);
    if (header == kNone) {
        return keys;
    }
    std::size_t const end = EndOfSection(header);
    for (std::size_t i = header + 1; i < end; ++i) {
        std::string_view const line = _lines[i];
        std::size_t const equals = line.find('=');
        if (equals != std::string_view::npos) {
            keys.emplace_back(Trim(line.substr(0, equals)));
        }
    }
    return keys;
}

bool IniLines::HasLineWithPrefix(std::string_view section, std::string_view key) const {
    std::size_t const header = FindHeader(section, 0);
    if (header == kNone) {
        return false;
    }
    for (std::size_t i = header + 1; i < _lines.size(); ++i) {
        if (BeginsWith(_lines[i], key)) {
            return true;
        }
    }
    return false;
}

bool IniLines::RemoveSection(std::string_view section) {
    std::size_t const header = FindHeader(section, 0);
    if (header == kNone) {
        return false;
    }
    auto const begin = _lines.begin();
    _lines.erase(begin + static_cast<std::ptrdiff_t>(header),
                 begin + static_cast<std::ptrdiff_t>(EndOfSection(header)));
    return true;
}

bool IniLines::RemoveKey(std::string_view section, std::string_view key) {
    std::size_t const found = FindKeyAnywhere(section, key);
    if (found == kNone) {
        return false;
    }
    _lines.erase(_lines.begin() + static_cast<std::ptrdiff_t>(found));
    return true;
}

}  // namespace Ubrix
