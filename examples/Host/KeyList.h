// Which keys came in, and what they said: kept in a plain file, so that a later run can compare.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>

namespace Host {

// Values by module and key. One line each in the file: module, key and value, with tabs between.
class KeyList {
public:
    using Name = std::pair<std::string, std::string>;

    void Set(std::string const& module, std::string const& key, std::string const& value);
    std::size_t Size() const { return _values.size(); }
    std::map<Name, std::string> const& Values() const { return _values; }

    bool Save(std::string const& path) const;
    // Replaces what is held. False if the file can't be read or a line is malformed.
    bool Load(std::string const& path);

private:
    std::map<Name, std::string> _values;
};

}  // namespace Host
