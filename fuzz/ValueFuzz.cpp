// Random operations on four values, beside a plain model of them: made, entered, copied from and into each
// other and themselves, exchanged, emptied. The input: pairs of an operation and what it works on.
#include <VelmorCore/Value.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "SilentLog.h"

namespace {

using Ubrix::Value;

// A text key, or an index with an empty one.
using Key = std::pair<std::string, int>;

struct Model {
    Ubrix::ValueType type = Ubrix::NullValue;
    long long integer = 0;
    std::string text;
    std::map<Key, Model> entries;

    std::size_t Size() const {
        std::size_t size = 1;
        for (auto const& entry : entries) {
            size += entry.second.Size();
        }
        return size;
    }
    int Height() const {
        int height = 0;
        for (auto const& entry : entries) {
            height = std::max(height, entry.second.Height());
        }
        return height + 1;
    }
};

constexpr int kRoots = 4;
constexpr std::size_t kMostNodes = 3000;
// Together, so that none in another is nested deeper than a value is copied.
constexpr int kMostLevels = 900;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void Compare(Value const& value, Model const& model) {
    Require(value.type() == model.type);
    switch (model.type) {
        case Ubrix::IntValue:
        case Ubrix::BooleanValue:
            Require(value.asInt64() == model.integer);
            break;
        case Ubrix::RealValue:
            Require(value.asDouble() == static_cast<float>(model.integer) / 4);
            break;
        case Ubrix::StringValue:
            Require(value.asCString() == model.text);
            break;
        case Ubrix::ArrayValue:
        case Ubrix::ObjectValue: {
            Require(value.Size() == static_cast<int>(model.entries.size()));
            auto entry = model.entries.begin();
            for (Ubrix::ValueConstIterator at = value.begin(); at != value.end(); ++at, ++entry) {
                Require(at.memberName() == entry->first.first && at.index() == entry->first.second);
                Compare(*at, entry->second);
            }
            break;
        }
        default:
            break;
    }
}

class Run {
public:
    void Do(int operation, int operand) {
        Value& value = *_value;
        Model& model = *_model;
        int const other = operand % kRoots;
        bool const isSmall = Sum(&Model::Size) < kMostNodes && Sum(&Model::Height) < kMostLevels;
        switch (operation % 12) {
            case 0:
                PlaceAt(other);
                break;
            case 1:
                Enter(std::string(1, "ab1 "[operand % 4]) + (operand > 200 ? "long" : ""), -1);
                break;
            case 2:
                Enter("", operand % 5 - 2);
                break;
            case 3:
                value = operand - 100;
                model = Model{Ubrix::IntValue, operand - 100, "", {}};
                break;
            case 4:
                model = Model{Ubrix::StringValue, 0, std::string(static_cast<std::size_t>(operand), 'x'), {}};
                value = Value::Text(model.text.c_str());
                break;
            case 5:
                value = operand % 2 == 0;
                model = Model{Ubrix::BooleanValue, operand % 2 == 0 ? 1 : 0, "", {}};
                break;
            case 6:
                value = operand / 4.0;
                model = Model{Ubrix::RealValue, operand, "", {}};
                break;
            case 7:
                // Also of what this value is a part of.
                if (isSmall) {
                    value = _values[other];
                    model = Model(_models[other]);
                }
                break;
            case 8:
                // Also of a part of itself.
                if (isSmall) {
                    _values[other] = value;
                    _models[other] = Model(model);
                    PlaceAt(other);
                }
                break;
            case 9:
                _values[other].swap(_values[operand / kRoots % kRoots]);
                std::swap(_models[other], _models[operand / kRoots % kRoots]);
                PlaceAt(other);
                break;
            case 10:
                value = Value(static_cast<Ubrix::ValueType>(operand % 3 == 0 ? 0 : 5 + operand % 3));
                model = Model{value.type(), 0, "", {}};
                break;
            default:
                TakeOwn(value, model);
                break;
        }
    }

    void Check() const {
        for (int i = 0; i < kRoots; ++i) {
            Compare(_values[i], _models[i]);
            Value const copy(_values[i]);
            Require(copy == _values[i] && !(copy < _values[i]) && !(copy > _values[i]));
            for (Value const& other : _values) {
                Require(!(other < _values[i] && _values[i] < other));
                Require(!(other == _values[i]) || !(other < _values[i]));
            }
        }
    }

private:
    template <typename Number>
    Number Sum(Number (Model::*part)() const) const {
        Number sum = 0;
        for (Model const& model : _models) {
            sum += (model.*part)();
        }
        return sum;
    }

    void PlaceAt(int root) {
        _value = &_values[root];
        _model = &_models[root];
    }

    void Enter(std::string const& name, int index) {
        auto const container = name.empty() ? Ubrix::ArrayValue : Ubrix::ObjectValue;
        if (_model->type != Ubrix::NullValue && _model->type != container) {
            return;
        }
        _value = name.empty() ? &(*_value)[index] : &(*_value)[name.c_str()];
        _model->type = container;
        _model = &_model->entries[{name, index}];
    }

    // Texts that lie in the value itself.
    static void TakeOwn(Value& value, Model& model) {
        if (model.type == Ubrix::StringValue) {
            value = Value::Text(value.asCString() + model.text.size() / 2);
            model.text = model.text.substr(model.text.size() / 2);
        } else if (model.type == Ubrix::ObjectValue && !model.entries.empty()) {
            char const* const name = value.begin().memberName();
            value[name] = Value::Text(name);
            model.entries.begin()->second =
                Model{Ubrix::StringValue, 0, model.entries.begin()->first.first, {}};
        }
    }

    Value _values[kRoots];
    Model _models[kRoots];
    Value* _value = _values;
    Model* _model = _models;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    SilentLog::Install();
    Run run;
    for (std::size_t i = 0; i + 1 < size && i < 2000; i += 2) {
        run.Do(data[i], data[i + 1]);
    }
    run.Check();
    return 0;
}
