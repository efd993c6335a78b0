// A line of 100 bytes into the open log block, with compression and key, beside deflate alone on the same
// lines: what is ours is the difference. The last one tells what the cipher takes of it.
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Security/Crypto/Tea.h"
#include "Storage/Log/log_buffer.h"

namespace {

using namespace Ubrix;
using namespace Ubrix::Crypto;

constexpr std::size_t kMemory = 153600;
// Where the flusher would take the block.
constexpr std::size_t kRipe = kMemory / 3;
// The generator of the curve: any point will do.
constexpr char kPublicKey[] =
    "79be667ef9dcbbac55a06295ce870b07029bfcdb2dce28d959f2815b16f81798"
    "483ada7726a3c4655da4fbfc0e1108a8fd17b448a68554199c47d08ffb10d4b8";

// Lines that differ as those of a game do.
std::vector<std::string> const& Lines() {
    static std::vector<std::string> const lines = [] {
        std::vector<std::string> made(1000);
        unsigned int word = 1;
        for (std::string& line : made) {
            word = word * 1664525U + 1013904223U;
            char text[128];
            std::snprintf(text, sizeof text,
                          "[2036-03-05 07:59:%02u %03u] | Info | [VelmorCore] |4711| Net.cpp:%u|Net::Send| "
                          "sent %u bytes to peer %08x in time",
                          word >> 27, (word >> 17) % 1000, word % 300, word % 1500, word);
            line = text;
            line.resize(99, '.');
            line += '\n';
        }
        return made;
    }();
    return lines;
}

void BlockWrite(benchmark::State& state) {
    std::vector<char> memory(kMemory);
    LogBuffer buffer(memory.data(), memory.size(), true, kPublicKey);
    AutoBuffer out;
    std::size_t at = 0;
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::string const& line = Lines()[at++ % Lines().size()];
        buffer.Write(line.data(), line.size());
        if (buffer.Buffer().Length() >= kRipe) {
            out.Length(0, 0);
            buffer.Flush(out);
            bytes += out.Length();
        }
    }
    state.counters["bytes a line"] =
        static_cast<double>(bytes + buffer.Buffer().Length()) / static_cast<double>(at);
}

void DeflateAlone(benchmark::State& state) {
    std::vector<unsigned char> memory(kMemory);
    z_stream stream{};
    std::size_t at = 0;
    for (auto _ : state) {
        if (stream.state == nullptr) {
            deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL,
                         Z_DEFAULT_STRATEGY);
            stream.next_out = memory.data();
            stream.avail_out = static_cast<uInt>(memory.size());
        }
        std::string const& line = Lines()[at++ % Lines().size()];
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(line.data()));
        stream.avail_in = static_cast<uInt>(line.size());
        deflate(&stream, Z_SYNC_FLUSH);
        if (stream.total_out >= kRipe) {
            deflateEnd(&stream);
            stream = {};
        }
    }
    deflateEnd(&stream);
}

// As many bytes as a compressed line has.
void CipherAlone(benchmark::State& state) {
    unsigned char bytes[48] = {};
    for (auto _ : state) {
        TeaEncryptLittleEndian(bytes, sizeof bytes / 8, kPublicKey, bytes);
        benchmark::DoNotOptimize(bytes);
    }
}

BENCHMARK(BlockWrite);
BENCHMARK(DeflateAlone);
BENCHMARK(CipherAlone);

}  // namespace
