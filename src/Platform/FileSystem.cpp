#include "Platform/FileSystem.h"

#include <new>

namespace Ubrix::Platform {

FileAnswer ReadWholeFile(char const* path, long long maxSize, std::string& content) {
    File file;
    FileAnswer const answer = OpenForReading(path, maxSize, file);
    if (answer != FileAnswer::Given) {
        return answer;
    }
    try {
        std::string read;
        char block[4096];
        while (std::size_t const count = file.Read(block, sizeof block)) {
            if (static_cast<long long>(read.size()) + static_cast<long long>(count) > maxSize) {
                return FileAnswer::Refused;  // It grew since it was opened.
            }
            read.append(block, count);
        }
        if (file.HasFailed()) {
            return FileAnswer::Failing;
        }
        content.swap(read);
        return FileAnswer::Given;
    } catch (std::bad_alloc const&) {
        return FileAnswer::Failing;
    }
}

}  // namespace Ubrix::Platform
