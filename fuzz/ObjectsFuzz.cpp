// Random operations on texts, arrays and dictionaries, beside plain models of them, with arguments that lie
// in what they change. The input: triples of an operation and two operands.
#include <VelmorCore/Object.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace Ubrix;

constexpr std::size_t kMostBytes = 5000;
constexpr std::size_t kMostElements = 200;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// Compares itself as a plain text does, from outside of the library: a dictionary walks once it holds one.
class Foreign : public AString {
public:
    using AString::AString;
    AObject* Clone() const override { return new Foreign(*this); }
};

class Texts {
public:
    void Do(int operation, std::size_t a, std::size_t b) {
        if (_model.size() > kMostBytes) {
            _text.Clear();
            _model.clear();
        }
        std::size_t const begin = _model.empty() ? 0 : a % (_model.size() + 1);
        std::size_t const length = std::min(b, _model.size() - begin);
        // The bytes of a part of itself; a part at the very beginning is no change for `assign`.
        char const* const part = _text.c_str() + begin;
        std::string const bytes = _model.substr(begin, length);
        switch (operation % 7) {
            case 0:
                _text.append(std::string(b, static_cast<char>('a' + a % 26)).c_str());
                _model.append(b, static_cast<char>('a' + a % 26));
                break;
            case 1:
                _text.append(part, static_cast<int>(length));
                _model += bytes;
                break;
            case 2:
                _text.assign(part, static_cast<int>(length));
                _model = begin == 0 && !_model.empty() ? _model : bytes;
                break;
            case 3:
                _text += _text;
                _model += std::string(_model);
                break;
            case 4:
                _text = part;
                _model = begin == 0 && !_model.empty() ? _model : _model.substr(begin);
                break;
            case 5:
                _text = _text + AString(part);
                _model += _model.substr(begin);
                break;
            default:
                _text = AString(_text.c_str(), static_cast<int>(std::min(a, _model.size())));
                _model.resize(std::min(a, _model.size()));
                break;
        }
        Require(_text.length() == static_cast<int>(_model.size()) && _text.c_str() == _model);
    }

private:
    AString _text;
    std::string _model;
};

class Lists {
public:
    void Do(int operation, std::size_t a, std::size_t b) {
        std::size_t const at = _model.empty() ? 0 : a % _model.size();
        bool const isShort = _model.size() < kMostElements;
        switch (operation % 6) {
            case 0:
                _list.Add(std::string(b % 100, 'x').c_str());
                _model.emplace_back(b % 100, 'x');
                break;
            case 1:
                _list.RemoveObjectAtIndex(static_cast<int>(a));
                if (a < _model.size()) {
                    _model.erase(_model.begin() + static_cast<std::ptrdiff_t>(a));
                }
                break;
            case 2:
                if (isShort) {
                    _list.Add(&_list);
                    std::vector<std::string> const copy(_model);
                    _model.insert(_model.end(), copy.begin(), copy.end());
                }
                break;
            case 3:
                if (!_model.empty()) {
                    _list.Add(*_list[static_cast<int>(at)]);
                    _model.push_back(std::string(_model[at]));
                }
                break;
            case 4:
                if (!_model.empty()) {
                    // The source lies in an element.
                    AString::Split(&_list, _list.CStringAtIndex(static_cast<int>(at)), "x");
                    _model.insert(_model.end(), _model[at].size() + 1, "");
                }
                break;
            default:
                _list = AArray(_list);
                break;
        }
        if (!isShort) {
            _list.RemoveAll();
            _model.clear();
        }
        Require(_list.Count() == static_cast<int>(_model.size()));
        for (std::size_t i = 0; i < _model.size(); ++i) {
            Require(_list.CStringAtIndex(static_cast<int>(i)) == _model[i]);
        }
    }

private:
    AArray _list;
    std::vector<std::string> _model;
};

// With plain keys in one dictionary and any in the other: both have to answer alike.
class Maps {
public:
    void Do(int operation, std::size_t a, std::size_t b) {
        std::string const key(a % 9 + 1, static_cast<char>('a' + a % 3));
        std::string const value = std::to_string(b);
        auto const found =
            std::find_if(_model.begin(), _model.end(), [&](auto const& entry) { return entry.first == key; });
        switch (operation % 6) {
            case 0:
            case 1:
                _plain.Set(key.c_str(), value.c_str());
                if (operation % 6 == 0) {
                    _mixed.Set(key.c_str(), value.c_str());
                } else {
                    _mixed.Set(Foreign(key.c_str()), AString(value.c_str()));
                }
                if (found != _model.end()) {
                    found->second = value;
                } else {
                    _model.emplace_back(key, value);
                }
                break;
            case 2:
                for (ADictionary* dictionary : {&_plain, &_mixed}) {
                    // The key itself, which goes with its entry.
                    int const place = static_cast<int>(found - _model.begin());
                    AString const absent(key.c_str());
                    dictionary->Remove(found != _model.end() ? dictionary->KeyAt(place) : &absent);
                }
                if (found != _model.end()) {
                    _model.erase(found);
                }
                break;
            case 3:
                // A value of its own, under another key.
                if (found != _model.end() && !_model.empty()) {
                    std::string const& first = _model.front().first;
                    _plain.Set(first.c_str(), *_plain.ObjectForKey(key.c_str()));
                    _mixed.Set(first.c_str(), *_mixed.ObjectForKey(key.c_str()));
                    _model.front().second = found->second;
                }
                break;
            case 4:
                if (b % 16 == 0) {
                    _plain.RemoveAll();
                    _mixed.RemoveAll();
                    _model.clear();
                }
                break;
            default: {
                ADictionary const copy(_mixed);
                for (auto const& [name, text] : _model) {
                    Require(copy.CStringForKey(name.c_str()) == text);
                }
                break;
            }
        }
        Check(_plain);
        Check(_mixed);
    }

private:
    void Check(ADictionary const& dictionary) const {
        Require(dictionary.Count() == static_cast<int>(_model.size()));
        for (std::size_t i = 0; i < _model.size(); ++i) {
            Require(dictionary.CStringKeyAt(static_cast<int>(i)) == _model[i].first);
            Require(dictionary.CStringForKey(_model[i].first.c_str()) == _model[i].second);
        }
    }

    ADictionary _plain;
    ADictionary _mixed;
    std::vector<std::pair<std::string, std::string>> _model;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Texts texts;
    Lists lists;
    Maps maps;
    for (std::size_t i = 0; i + 2 < size && i < 1500; i += 3) {
        int const operation = data[i] / 3;
        switch (data[i] % 3) {
            case 0:
                texts.Do(operation, data[i + 1], data[i + 2]);
                break;
            case 1:
                lists.Do(operation, data[i + 1], data[i + 2]);
                break;
            default:
                maps.Do(operation, data[i + 1], data[i + 2]);
                break;
        }
    }
    return 0;
}
