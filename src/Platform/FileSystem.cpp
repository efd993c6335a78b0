#include "Platform/FileSystem.h"

#include <new>

namespace Ubrix::Platform {

FileAnswer ReadWholeFile(char const* path, long long maxSize, std::string& content) {
    OpenFile stream;
    FileAnswer const answer = OpenForReading(path, maxSize, stream);
    if (answer != FileAnswer::Given) {
        return answer;
    }
    try {
        std::string read;
        char block[4096];
        while (std::size_t const count = std::fread(block, 1, sizeof block, stream.get())) {
            if (static_cast<long long>(read.size()) + static_cast<long long>(count) > maxSize) {
                return FileAnswer::Refused;  // It grew since it was opened.
            }
            read.append(block, count);
        }
        if (std::ferror(stream.get()) != 0) {
            return FileAnswer::Failing;
        }
        content.swap(read);
        return FileAnswer::Given;
    } catch (std::bad_alloc const&) {
        return FileAnswer::Failing;
    }
}

}  // namespace Ubrix::Platform
