#include "Serializer/WYR/WyrIO.h"

#include <cassert>
#include <cstdint>
#include <memory>
#include <new>

#include "Platform/File.h"
#include "Serializer/WYR/WyrError.h"

namespace Ubrix {

WyrInput::WyrInput() : _content(nullptr), _state(WyrError::WYR_NO_ERROR) {}

WyrInput::~WyrInput() {
    delete[] _content;
}

int WyrInput::load(char const* file) {
    assert(nullptr != file);
    assert(WyrError::WYR_NO_ERROR == _state);
    Platform::File opened = Platform::File::Open(file, Platform::File::Mode::Read);
    if (!opened.IsOpen()) {
        return _state = WyrError::WYR_ERR_OPEN_READ;
    }
    long long const length = opened.Length();
    // The greatest length is what a directory answers with.
    if (length < 0 || length >= PTRDIFF_MAX) {
        return _state = WyrError::WYR_ERR_FILE_READ;
    }
    auto const size = static_cast<size_t>(length);
    std::unique_ptr<char[]> content(new (std::nothrow) char[size + 1]);
    if (content == nullptr) {
        return _state = WyrError::WYR_ERR_NO_MEMORY;
    }
    if (opened.Read(content.get(), size) < size) {
        return _state = WyrError::WYR_ERR_FILE_READ;
    }
    content[size] = '\0';
    delete[] _content;
    _content = content.release();
    return _state;
}

WyrOutput::WyrOutput(std::FILE* file) : _file(file), _state(WyrError::WYR_NO_ERROR) {}

WyrOutput::WyrOutput(char* memory, size_t size)
    : _file(nullptr), _buffer(memory, size), _state(WyrError::WYR_NO_ERROR) {}

WyrOutput::~WyrOutput() = default;

int WyrOutput::print(char const* format, va_list args) {
    assert(WyrError::WYR_NO_ERROR == _state);
    if (_file == nullptr) {
        _state = _buffer.vtextize(format, args);
        return _state;
    }
    int const written = std::vfprintf(_file, format, args);
    if (written < 0) {
        _state = WyrError::WYR_ERR_FILE_WRITE;
    }
    return _state;
}

int WyrOutput::printf(char const* format, ...) {
    va_list args;
    va_start(args, format);
    int const result = print(format, args);
    va_end(args);
    return result;
}

int WyrOutput::write(void const* src, size_t size) {
    assert(WyrError::WYR_NO_ERROR == _state);
    if (_file == nullptr) {
        _state = _buffer.writeBytes(src, size);
    } else if (std::fwrite(src, 1, size, _file) < size) {
        _state = WyrError::WYR_ERR_FILE_WRITE;
    }
    return _state;
}

}  // namespace Ubrix
