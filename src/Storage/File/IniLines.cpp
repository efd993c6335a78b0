#include "Storage/File/IniLines.h"

#include <iterator>
#include <tuple>
#include <utility>

namespace Ubrix {

namespace {

// Between the orders of neighbours at the end of the file. There is room for 2^36 blocks appended in turn.
constexpr std::uint64_t kOrderStep = std::uint64_t{1} << 28;

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

// A long text that is compared with itself takes no time.
int CompareTexts(std::string_view left, std::string_view right) {
    bool const same = left.data() == right.data() && left.size() == right.size();
    return same ? 0 : left.compare(right);
}

std::string KeyLine(std::string_view key, std::string_view value) {
    std::string line(key);
    line += '=';
    line += value;
    return line;
}

}  // namespace

IniLines::Line::Line(std::string content) : text(std::move(content)) {
    std::size_t const equals = text.find('=');
    if (equals != std::string::npos) {
        std::string_view const key = Trim(std::string_view(text).substr(0, equals));
        keyBegin = key.empty() ? 0 : static_cast<std::size_t>(key.data() - text.data());
        keySize = key.size();
    }
}

IniLines::Names IniLines::NamesAt(Place const& place) {
    Block const& block = *place.block;
    bool const isKey = place.line > 0;
    return {block.section, isKey, isKey ? block.lines[place.line].Key() : std::string_view()};
}

int IniLines::Compare(Names const& left, Names const& right) {
    int const sections = CompareTexts(left.section, right.section);
    if (sections != 0) {
        return sections;
    }
    return left.isKey == right.isKey ? CompareTexts(left.key, right.key) : left.isKey - right.isKey;
}

bool IniLines::IsIndexed(Place const& place) {
    Block const& block = *place.block;
    return block.hasHeader && (place.line == 0 || block.lines[place.line].HasKey());
}

bool IniLines::IndexOrder::operator()(Place const& left, Names const& right) const {
    return Compare(NamesAt(left), right) < 0;
}

bool IniLines::IndexOrder::operator()(Place const& left, Place const& right) const {
    int const names = Compare(NamesAt(left), NamesAt(right));
    if (names != 0) {
        return names < 0;
    }
    return std::tie(left.block->order, left.line) < std::tie(right.block->order, right.line);
}

IniLines::Place const* IniLines::Find(Names const& names) const {
    auto const found = _index.lower_bound(names);
    return found != _index.end() && Compare(NamesAt(*found), names) == 0 ? &*found : nullptr;
}

void IniLines::Index(Blocks::iterator block, std::size_t from) {
    for (Place place{block, from}; place.line < block->lines.size(); ++place.line) {
        if (IsIndexed(place)) {
            _index.insert(place);
        }
    }
}

void IniLines::Unindex(Blocks::iterator block, std::size_t from) {
    for (Place place{block, from}; place.line < block->lines.size(); ++place.line) {
        if (IsIndexed(place)) {
            _index.erase(place);
        }
    }
}

// Where the neighbours leave no room, blocks behind are spread out, as many as it takes to find a gap wider
// than the square of their number: O(log n) for each new block in the long run (Dietz and Sleator, "Two
// algorithms for maintaining order in a list", 1987).
void IniLines::Number(Blocks::iterator block) {
    std::uint64_t const before = std::prev(block)->order;
    std::uint64_t count = 1;
    auto after = std::next(block);
    while (after != _blocks.end() && after->order - before <= count * count) {
        ++after;
        ++count;
    }
    std::uint64_t const step = after == _blocks.end() ? kOrderStep : (after->order - before) / (count + 1);
    std::uint64_t order = before;
    for (; block != after; ++block) {
        order += step;
        block->order = order;
    }
}

IniLines::Blocks::iterator IniLines::Add(Blocks::iterator block, Line line) {
    if (BeginsWith(line.text, "[")) {
        return AddBlock(block, std::move(line));
    }
    block->lines.push_back(std::move(line));
    try {
        Index(block, block->lines.size() - 1);
    } catch (...) {
        block->lines.pop_back();
        throw;
    }
    return block;
}

IniLines::Blocks::iterator IniLines::AddBlock(Blocks::iterator block, Line line) {
    Blocks made(1);
    Block& fresh = made.front();
    std::size_t const close = line.text.find(']');
    fresh.hasHeader = close != std::string::npos;
    if (fresh.hasHeader) {
        fresh.section = Trim(std::string_view(line.text).substr(1, close - 1));
    }
    fresh.lines.push_back(std::move(line));

    auto const place = made.begin();
    _blocks.splice(std::next(block), made);
    Number(place);
    try {
        Index(place, 0);
    } catch (...) {
        _blocks.erase(place);
        throw;
    }
    return place;
}

void IniLines::AddToSection(Blocks::iterator block, Line line) {
    bool const isLast = std::next(block) == _blocks.end();
    std::size_t const count = block->lines.size();
    // In front of the section's last line: where edits made the section, that is the empty line which
    // separates it from the next.
    if (Add(block, std::move(line)) == block && !isLast && count > 1) {
        SwapWithNext(block, count - 1);
    }
}

void IniLines::SwapWithNext(Blocks::iterator block, std::size_t line) {
    Place const one{block, line};
    Place const next{block, line + 1};
    auto first = IsIndexed(one) ? _index.extract(one) : Places::node_type();
    auto second = IsIndexed(next) ? _index.extract(next) : Places::node_type();
    std::swap(block->lines[line], block->lines[line + 1]);
    if (!first.empty()) {
        first.value() = next;
        _index.insert(std::move(first));
    }
    if (!second.empty()) {
        second.value() = one;
        _index.insert(std::move(second));
    }
}

void IniLines::RemoveLast() {
    auto const block = std::prev(_blocks.end());
    Unindex(block, block->lines.size() - 1);
    block->lines.pop_back();
    if (block->lines.empty() && block != _blocks.begin()) {
        _blocks.erase(block);
    }
}

void IniLines::Clear() {
    IniLines empty;
    Swap(empty);
}

void IniLines::Swap(IniLines& other) noexcept {
    _blocks.swap(other._blocks);
    _index.swap(other._index);
}

void IniLines::WriteAll(IniLines const& edits) {
    for (Block const& block : edits._blocks) {
        for (std::size_t i = 1; block.hasHeader && i < block.lines.size(); ++i) {
            Line const& line = block.lines[i];
            if (line.HasKey()) {
                Write(block.section, line.Key(), std::string_view(line.text).substr(line.text.find('=') + 1));
            }
        }
    }
}

IniLines::Lookup IniLines::Read(std::string_view section, std::string_view key, std::string& value) const {
    Place const* const found = FindKey(section, key);
    if (found == nullptr) {
        return Lookup::Absent;
    }
    std::string_view const line = found->block->lines[found->line].text;
    std::size_t const behind = line.find('=') + 1;
    if (behind == line.size()) {
        return Lookup::Absent;
    }
    std::size_t const comment = line.find('#', behind);
    value = Trim(line.substr(behind, comment == std::string_view::npos ? comment : comment - behind));
    return Lookup::Found;
}

void IniLines::Write(std::string_view section, std::string_view key, std::string_view value) {
    Place const* const header = FindHeader(section);
    if (header == nullptr) {
        WriteSection(section, KeyLine(key, value));
        return;
    }
    Place const* const found = FindKey(section, key);
    if (found == nullptr || found->block != header->block) {
        AddToSection(header->block, Line(KeyLine(key, value)));
        return;
    }
    std::string& line = found->block->lines[found->line].text;
    std::size_t const behind = line.find('=') + 1;
    // A "#" of the value's own begins the line's comment: keeping the old one too would let the line grow
    // with each write.
    bool const keepsComment = value.find('#') == std::string_view::npos;
    std::size_t const comment = keepsComment ? line.find('#', behind) : std::string::npos;
    line.replace(behind, comment == std::string::npos ? comment : comment - behind, value);
}

void IniLines::WriteSection(std::string_view section, std::string const& line) {
    std::string head("[");
    head += section;
    head += ']';
    int added = 0;
    try {
        for (std::string_view const text :
             {std::string_view(), std::string_view(head), std::string_view(line)}) {
            Append(text);
            ++added;
        }
    } catch (...) {
        for (; added > 0; --added) {
            RemoveLast();
        }
        throw;
    }
}

std::vector<std::string> IniLines::Keys(std::string_view section) const {
    std::vector<std::string> keys;
    Place const* const header = FindHeader(section);
    if (header == nullptr) {
        return keys;
    }
    Place place = *header;
    for (++place.line; place.line < place.block->lines.size(); ++place.line) {
        if (IsIndexed(place)) {
            keys.emplace_back(NamesAt(place).key);
        }
    }
    return keys;
}

bool IniLines::HasLineWithPrefix(std::string_view section, std::string_view key) const {
    Place const* const header = FindHeader(section);
    if (header == nullptr) {
        return false;
    }
    std::size_t line = 1;
    for (Blocks::const_iterator block = header->block; block != _blocks.end(); ++block, line = 0) {
        for (; line < block->lines.size(); ++line) {
            if (BeginsWith(block->lines[line].text, key)) {
                return true;
            }
        }
    }
    return false;
}

bool IniLines::RemoveSection(std::string_view section) {
    Place const* const header = FindHeader(section);
    if (header == nullptr) {
        return false;
    }
    Blocks::iterator const block = header->block;
    Unindex(block, 0);
    _blocks.erase(block);
    return true;
}

bool IniLines::RemoveKey(std::string_view section, std::string_view key) {
    Place const* const found = FindKey(section, key);
    if (found == nullptr) {
        return false;
    }
    Place const place = *found;
    _index.erase(place);
    std::vector<Line>& lines = place.block->lines;
    for (std::size_t i = place.line; i + 1 < lines.size(); ++i) {
        SwapWithNext(place.block, i);
    }
    lines.pop_back();
    return true;
}

}  // namespace Ubrix
