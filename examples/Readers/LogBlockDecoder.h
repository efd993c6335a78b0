// Reads log blocks by their documented form alone, with nothing of the library's own code: what a support
// desk that holds the private key does.
#pragma once

#include <zlib.h>

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "Readers/EncipheredFileDecoder.h"
#include "Readers/Files.h"

namespace Test {

struct LogBlock {
    unsigned int start, sequence, beginHour, endHour;
    std::string publicKey;
    std::string body;  // as it stands
    std::string text;
};

inline std::string DecipherUnits(std::string body, std::string const& key) {
    auto const word = [&](std::size_t i) { return LittleEndian(key, 4 * i, 4); };
    for (std::size_t at = 0; at + 8 <= body.size(); at += 8) {
        std::uint64_t const first = LittleEndian(body, at, 4);
        std::uint64_t const plain = TeaDecrypt(first << 32 | LittleEndian(body, at + 4, 4), word);
        for (unsigned int i = 0; i < 8; ++i) {
            body[at + i] = static_cast<char>(plain >> 8 * ((i + 4) % 8));
        }
    }
    return body;
}

// A stream that simply stops at a flush is whole.
inline std::string InflateRaw(std::string body) {
    z_stream stream{};
    inflateInit2(&stream, -15);
    std::string text(body.size() * 1100 + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(body.data());
    stream.avail_in = static_cast<uInt>(body.size());
    stream.next_out = reinterpret_cast<Bytef*>(text.data());
    stream.avail_out = static_cast<uInt>(text.size());
    int const result = inflate(&stream, Z_SYNC_FLUSH);
    text.resize(stream.total_out);
    inflateEnd(&stream);
    return result == Z_OK || result == Z_BUF_ERROR ? text : "bad stream";
}

// All block files of a module together: the hour may have changed meanwhile.
inline std::string ReadBlockFiles(std::string const& module) {
    std::filesystem::directory_iterator const files("Cache/VelmorSDKLog/" + module);
    std::string content;
    for (std::filesystem::path const& path : std::set<std::filesystem::path>(files, {})) {
        content += path.extension() == ".xlog" ? ReadWholeFile(path.string()) : "not a block";
    }
    return content;
}

// All blocks of a sound file; one with the text "bad block" ends the list where the file isn't sound.
inline std::vector<LogBlock> DecodeBlocks(std::string const& file, std::string const& privateKeyHex = "") {
    std::vector<LogBlock> blocks;
    for (std::size_t at = 0; at < file.size();) {
        std::string const rest = file.substr(at);
        std::size_t const length = rest.size() < 74 ? file.size() : LittleEndian(rest, 5, 4);
        if (length > rest.size() - 74 || rest[73 + length] != '\0') {
            blocks.emplace_back().text = "bad block";
            return blocks;
        }
        std::string const body = rest.substr(73, length);
        LogBlock block{LittleEndian(rest, 0, 1),
                       LittleEndian(rest, 1, 2),
                       LittleEndian(rest, 3, 1),
                       LittleEndian(rest, 4, 1),
                       rest.substr(9, 64),
                       body,
                       body};
        // The helper looks for the public key 16 bytes in.
        if (block.start == 6 || block.start == 7) {
            block.text = DecipherUnits(body, ServerKey(privateKeyHex, std::string(7, ' ') + rest));
        }
        if (block.start == 7 || block.start == 9) {
            block.text = InflateRaw(block.text);
        }
        blocks.push_back(block);
        at += 74 + length;
    }
    return blocks;
}

}  // namespace Test
