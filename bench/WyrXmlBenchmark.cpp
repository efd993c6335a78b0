// Reading a document of 64 KiB with 1,000 fields, beside a public peer in the same run. Both copy the text,
// parse it and ask for each field once: by a record of distinct names, and by a run of one name.
#include <benchmark/benchmark.h>

#include <cstring>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "Serializer/WYR/WyrXmlReader.h"

namespace {

constexpr int kFields = 1000;
constexpr size_t kSize = 65536;

// 20 records of 50 fields each.
constexpr int kRecords = 20;
constexpr int kFieldsOfRecord = kFields / kRecords;

std::vector<std::string> const& FieldNames() {
    static auto const* const names = [] {
        auto* made = new std::vector<std::string>;
        for (int i = 0; i < kFieldsOfRecord; ++i) {
            made->push_back("field" + std::to_string(100 + i));
        }
        return made;
    }();
    return *names;
}

std::string const& Document() {
    static auto const* const text = [] {
        auto* made = new std::string("<root>\n");
        size_t const value = kSize / kFields - 26;
        for (int r = 0; r < kRecords; ++r) {
            *made += "\t<record>\n";
            for (std::string const& name : FieldNames()) {
                *made += "\t\t<" + name + ">\n" + std::string(value, 'v') + "\t\t</" + name + ">\n";
            }
            *made += "\t</record>\n";
        }
        *made += "</root>\n";
        return made;
    }();
    return *text;
}

void WyrXmlRead(benchmark::State& state) {
    std::string const& text = Document();
    size_t bytes = 0;
    for (auto _ : state) {
        Ubrix::WyrXmlReader reader(text.data(), text.size(), Ubrix::WYR_XML_ELEMENTS);
        reader.enter("root");
        while (reader.enter("record") == 0) {
            for (std::string const& name : FieldNames()) {
                bytes += std::strlen(reader.value(name.c_str()));
            }
            reader.leave("record");
        }
    }
    benchmark::DoNotOptimize(bytes);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void WyrXmlReadPeer(benchmark::State& state) {
    std::string const& text = Document();
    size_t bytes = 0;
    for (auto _ : state) {
        pugi::xml_document document;
        document.load_buffer(text.data(), text.size());
        for (pugi::xml_node record = document.child("root").child("record"); record;
             record = record.next_sibling("record")) {
            for (std::string const& name : FieldNames()) {
                bytes += std::strlen(record.child_value(name.c_str()));
            }
        }
    }
    benchmark::DoNotOptimize(bytes);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

BENCHMARK(WyrXmlRead);
BENCHMARK(WyrXmlReadPeer);

}  // namespace
