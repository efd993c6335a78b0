#include "KeyList.h"

#include <fstream>

namespace Host {

void KeyList::Set(std::string const& module, std::string const& key, std::string const& value) {
    _values[{module, key}] = value;
}

bool KeyList::Save(std::string const& path) const {
    std::ofstream file(path, std::ios::trunc);
    for (auto const& [name, value] : _values) {
        file << name.first << '\t' << name.second << '\t' << value << '\n';
    }
    file.close();
    return !file.fail();
}

bool KeyList::Load(std::string const& path) {
    std::ifstream file(path);
    if (!file) {
        return false;
    }
    _values.clear();
    for (std::string line; std::getline(file, line);) {
        std::size_t const first = line.find('\t');
        std::size_t const second = first == std::string::npos ? first : line.find('\t', first + 1);
        if (second == std::string::npos) {
            return false;
        }
        Set(line.substr(0, first), line.substr(first + 1, second - first - 1), line.substr(second + 1));
    }
    return true;
}

}  // namespace Host
