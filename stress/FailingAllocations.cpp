// Fails each allocation of an operation in turn, once alone and once with all that follow it: no exception
// may come out, and what the operation works on must be as it was or as it should be. Each row of the tables
// below is one operation, in a process of its own; every symbol that the library exports has to be named by a
// row, or be in the list of those that take no memory. `quick` fails the first few of each,
// `full` all.
#include <VelmorCore/Buffer.h>
#include <VelmorCore/Bundle.h>
#include <VelmorCore/ConfigFile.h>
#include <VelmorCore/Log.h>
#include <VelmorCore/Operation.h>
#include <VelmorCore/Value.h>
#include <VelmorCore/Zip.h>
#include <VelmorCore/velmorcore.h>
#include <fnmatch.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <VelmorCore/VelmorCore.hpp>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <new>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Platform/MemoryWant.h"

namespace {

// Of the thread that runs the operation: the others work undisturbed.
thread_local long t_left = 0;
thread_local bool t_persists = false;
thread_local bool t_hasFailed = false;
// Spares what isn't allocated by `new`: the zip library takes a null for a block.
thread_local bool t_oursOnly = false;

bool IsRefused() {
    bool isRefused = t_persists && t_hasFailed;
    if (t_left != 0) {
        t_hasFailed = isRefused = --t_left == 0;
    }
    if (isRefused) {
        errno = ENOMEM;
    }
    return isRefused;
}

}  // namespace

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define SANITIZED 1
#endif
#endif

// Not inlined, so that the compiler sees a pair of functions and not what is in them.
#define APART __attribute__((noinline))

#if defined(SANITIZED)
// Their malloc is theirs: here only the library's own allocations fail.
void* Block(std::size_t size) {
    return std::malloc(size);
}
#else
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

void* malloc(std::size_t size) {
    return !t_oursOnly && IsRefused() ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    return !t_oursOnly && IsRefused() ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) {
    return !t_oursOnly && IsRefused() ? nullptr : __libc_realloc(block, size);
}
}
void* Block(std::size_t size) {
    return __libc_malloc(size);
}
#endif

APART void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    return IsRefused() ? nullptr : Block(size);
}
APART void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    return IsRefused() ? nullptr : Block(size);
}
APART void* operator new(std::size_t size) {
    void* const block = IsRefused() ? nullptr : Block(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
APART void* operator new[](std::size_t size) {
    return operator new(size);
}
APART void operator delete(void* block) noexcept {
    std::free(block);
}
APART void operator delete[](void* block) noexcept {
    std::free(block);
}
APART void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}
APART void operator delete[](void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}

namespace {

using namespace Ubrix;

constexpr ALogPriority kError = ALogPriorityError;
constexpr char kLong[] =
    "a text that doesn't fit the block which an empty one begins with, by some bytes more";
unsigned char const* const kBytes = reinterpret_cast<unsigned char const*>(kLong);

void Print(std::ostream& out, AObject const* object) {
    if (object == nullptr) {
        out << "none";
        return;
    }
    switch (object->ObjectType()) {
        case AObject::TypeString:
            out << '"' << static_cast<AString const*>(object)->Dump("").c_str() << '"';
            break;
        case AObject::TypeNumber:
            out << static_cast<ANumber const*>(object)->ToString().c_str();
            break;
        case AObject::TypeData: {
            auto const* data = static_cast<AData const*>(object);
            out << "data("
                << std::string(reinterpret_cast<char const*>(data->Data()), static_cast<size_t>(data->Size()))
                << ')';
            break;
        }
        case AObject::TypeArray: {
            auto const* array = static_cast<AArray const*>(object);
            out << '[';
            for (int i = 0; i < array->Count(); ++i) {
                Print(out << ' ', array->ObjectAtIndex(i));
            }
            out << ']';
            break;
        }
        case AObject::TypeDictionary: {
            auto const* dictionary = static_cast<ADictionary const*>(object);
            std::set<std::string> entries;
            for (int i = 0; i < dictionary->Count(); ++i) {
                std::ostringstream entry;
                Print(entry, dictionary->KeyAt(i));
                Print(entry << ':', dictionary->ObjectForKey(dictionary->KeyAt(i)));
                entries.insert(entry.str());
            }
            out << '{';
            for (std::string const& entry : entries) {
                out << ' ' << entry;
            }
            out << '}';
            break;
        }
        case AObject::TypeObject:
            if (auto const* builder = dynamic_cast<AStringBuilder const*>(object)) {
                out << "builder(" << builder->ToString() << ')';
            }
            break;
    }
}

void Print(std::ostream& out, Value const& value) {
    if (!value.isArray() && !value.isObject()) {
        out << static_cast<int>(value.type()) << '=' << value.asString().c_str();
        return;
    }
    out << (value.isArray() ? '[' : '{');
    for (ValueConstIterator at = value.begin(); at != value.end(); ++at) {
        out << ' ' << at.memberName() << at.index() << ':';
        Print(out, *at);
    }
    out << '}';
}

// A key that compares itself: a dictionary that holds one walks.
class OwnKey : public AString {
public:
    using AString::AString;
    AObject* Clone() const override { return new OwnKey(*this); }
};

// A structure that holds others.
class Record : public _tagSarnetActionBufferBase {
public:
    Record() : _tagSarnetActionBufferBase(5) {}
    AObject* Clone() const override { return new Record(*this); }
    void WriteTo(CSarnetBufferWriter& writer) const override {
        writer.Write(text);
        writer.Write(list);
    }
    void ReadFrom(CSarnetBufferReader& reader) override { reader.Read(text); }

    AString text;
    AArray list;
};

// What the operations of the object model work on, and what they answer.
struct Objects {
    AString text{"short"};
    AString other{kLong};
    AData longData{kBytes, 80};
    AStringBuilder longBuilder{kLong};
    CSarnetBufferWriter longWriter;
    AData data;
    AStringBuilder builder{"built"};
    AArray array;
    ADictionary dictionary;
    ADictionary walked;
    Value value;
    Value const* read = &value;
    CSarnetBufferWriter writer;
    AString encoded;
    _tagSarnetBufferBuffer block;
    _tagSarnetBufferBuffer otherBlock;
    Record record;
    _tagADetailNetworkInfo info;
    // Answers: nothing at first.
    std::unique_ptr<AObject> made;
    AString answer;
    Value answeredValue;
    int number = 0;

    Objects() {
        data.Append("data");
        array.Add("one");
        array.Add(2);
        dictionary.Set("k", "v");
        dictionary.Set("long", kLong);
        walked.Set(OwnKey("o"), AString("w"));
        walked.Set("k", "v");
        value["k"] = "v";
        value["list"][3] = kLong;
        writer.Write("w");
        longWriter.Write(kLong);
        record.text = kLong;
        record.list.Add(kLong);
        block.Decode("block", 5);
        otherBlock.Decode(kLong, 40);
        info.text1 = kLong;
        Record().Encode(encoded);
        record.Encode(encoded);
    }
    std::string State() const {
        std::ostringstream out;
        for (AObject const* object :
             {static_cast<AObject const*>(&text), static_cast<AObject const*>(&data),
              static_cast<AObject const*>(&builder), static_cast<AObject const*>(&array),
              static_cast<AObject const*>(&dictionary), static_cast<AObject const*>(&walked),
              static_cast<AObject const*>(&writer.GetBufferData()), static_cast<AObject const*>(made.get()),
              static_cast<AObject const*>(&answer)}) {
            Print(out << ' ', object);
        }
        Print(out << ' ', value);
        Print(out << ' ', answeredValue);
        AString bytes;
        block.Encode(bytes);
        out << ' ' << bytes.c_str() << ' ' << info.text2.c_str() << ' ' << number;
        return out.str();
    }
};

struct Row {
    char const* covers;  // the names of what the operation calls, without arguments
    std::function<void(Objects&)> run;
};

Row const
    kObjectRows
        [] =
            {
                {"AData::AData AData::Assign", [](Objects& o) { o.number = AData(kBytes, 80).Size(); }},
                {"AData::AData", [](Objects& o) { o.number = AData(o.data).Size(); }},
                {"AData::Append AData::LeftSize AData::Renew AData::Install",
                 [](Objects& o) { o.data.Append(kBytes, 80); }},
                {"AData::Append", [](Objects& o) { o.data.Append(kLong); }},
                {"AData::operator+=", [](Objects& o) { o.data += o.longData; }},
                {"AData::operator=", [](Objects& o) { o.data = o.longData; }},
                {"AData::operator=", [](Objects& o) { o.data = kLong; }},
                {"AData::Assign", [](Objects& o) { o.data.Assign(kBytes, 70); }},
                {"AData::SetCapacity", [](Objects& o) { o.data.SetCapacity(1000); }},
                {"AData::Clear AData::Cut", [](Objects& o) { o.data.Clear(); }},
                {"AData::Clone", [](Objects& o) { o.made.reset(o.data.Clone()); }},
                {"AString::AString",
                 [](Objects& o) { o.number = AString(kLong).length() + AString().length(); }},
                {"AString::AString", [](Objects& o) { o.number = AString(kLong, 75).length(); }},
                {"AString::AString", [](Objects& o) { o.number = AString(o.other).length(); }},
                {"AString::operator=", [](Objects& o) { o.text = o.other; }},
                {"AString::operator=", [](Objects& o) { o.text = kLong; }},
                {"AString::assign", [](Objects& o) { o.text.assign(kLong, 70); }},
                {"AString::Clear AString::clear", [](Objects& o) { o.text.Clear(); }},
                {"AString::append", [](Objects& o) { o.text.append(kLong); }},
                {"AString::append", [](Objects& o) { o.text.append(o.other); }},
                {"AString::append", [](Objects& o) { o.text.append(kLong, 70); }},
                {"AString::operator+=", [](Objects& o) { o.text += o.other; }},
                {"AString::operator+=", [](Objects& o) { o.text += kLong; }},
                {"AString::operator+=", [](Objects& o) { o.text += '!'; }},
                {"AString::Clone", [](Objects& o) { o.made.reset(o.other.Clone()); }},
                {"AString::Split",
                 [](Objects& o) { o.number = AString::Split(&o.array, kLong, " ") ? 1 : 0; }},
                {"AString::Dump", [](Objects& o) { o.answer = o.other.Dump(nullptr); }},
                {"operator+", [](Objects& o) { o.answer = o.text + o.other; }},
                {"int2str", [](Objects& o) { o.answer = int2str(-5); }},
                {"ll2str", [](Objects& o) { o.answer = ll2str(LLONG_MIN); }},
                {"ull2str", [](Objects& o) { o.answer = ull2str(ULLONG_MAX); }},
                {"bool2str", [](Objects& o) { o.answer = bool2str(true); }},
                {"AStringBuilder::AStringBuilder AStringBuilder::operator=",
                 [](Objects& o) { o.builder = o.longBuilder; }},
                {"AStringBuilder::Append", [](Objects& o) { o.builder.Append(kLong); }},
                {"AStringBuilder::operator+=", [](Objects& o) { o.builder += o.other; }},
                {"AStringBuilder::operator=", [](Objects& o) { o.builder = o.other; }},
                {"AStringBuilder::operator=", [](Objects& o) { o.builder = kLong; }},
                {"AStringBuilder::Clear", [](Objects& o) { o.builder.Clear(); }},
                {"AStringBuilder::Clone", [](Objects& o) { o.made.reset(o.builder.Clone()); }},
                {"ANumber::Clone", [](Objects& o) { o.made.reset(ANumber(5).Clone()); }},
                {"ANumber::ToString", [](Objects& o) { o.answer = ANumber(1e300).ToString(); }},
                {"ANumber::FromString", [](Objects& o) { o.number = ANumber().FromString("1.5") ? 1 : 0; }},
                {"AArray::AArray", [](Objects& o) { o.number = AArray(&o.array).Count(); }},
                {"AArray::operator=", [](Objects& o) { o.array = o.record.list; }},
                {"AArray::AArray", [](Objects& o) { o.number = AArray(o.array).Count(); }},
                {"AArray::Add AArray::List", [](Objects& o) { o.array.Add(&o.other, false); }},
                {"AArray::Add", [](Objects& o) { o.array.Add(static_cast<AObject const&>(o.other)); }},
                {"AArray::Add", [](Objects& o) { o.array.Add(ANumber(5)); }},
                {"AArray::Add", [](Objects& o) { o.array.Add(kLong); }},
                {"AArray::Add AArray::Take", [](Objects& o) { o.array.Add(&o.array); }},
                {"AArray::Clone", [](Objects& o) { o.made.reset(o.array.Clone()); }},
                {"AArray::RemoveObjectAtIndex", [](Objects& o) { o.array.RemoveObjectAtIndex(0); }},
                {"AArray::RemoveAll", [](Objects& o) { o.array.RemoveAll(); }},
                {"ADictionary::ADictionary",
                 [](Objects& o) { o.number = ADictionary(o.dictionary).Count(); }},
                {"ADictionary::operator=", [](Objects& o) { o.dictionary = o.walked; }},
                {"ADictionary::Set", [](Objects& o) { o.dictionary.Set(o.walked); }},
                {"ADictionary::Clone", [](Objects& o) { o.made.reset(o.dictionary.Clone()); }},
                {"ADictionary::Set ADictionary::Put ADictionary::PutCopy ADictionary::Content",
                 [](Objects& o) { o.dictionary.Set(o.other, o.array); }},
                {"ADictionary::Set", [](Objects& o) { o.dictionary.Set(ANumber(1), o.array); }},
                {"ADictionary::Set", [](Objects& o) { o.dictionary.Set(ANumber(1), ANumber(2)); }},
                {"ADictionary::Set", [](Objects& o) { o.dictionary.Set("k", o.array); }},
                {"ADictionary::Set", [](Objects& o) { o.dictionary.Set("new", ANumber(2)); }},
                {"ADictionary::Set", [](Objects& o) { o.dictionary.Set("k", kLong); }},
                {"ADictionary::Set", [](Objects& o) { o.dictionary.Set(ANumber(1), kLong); }},
                {"ADictionary::Set", [](Objects& o) { o.dictionary.Set(OwnKey("k"), &o.other); }},
                {"ADictionary::Set", [](Objects& o) { o.dictionary.Set("k", &o.other); }},
                {"ADictionary::Set", [](Objects& o) { o.dictionary.Set(&o.text, &o.other); }},
                {"ADictionary::Set", [](Objects& o) { o.walked.Set("k", "new"); }},
                {"ADictionary::ObjectForKey",
                 [](Objects& o) { o.number = o.walked.ObjectForKey("k") != nullptr ? 1 : 0; }},
                {"ADictionary::CStringForKey",
                 [](Objects& o) { o.number = o.walked.CStringForKey("k") != nullptr ? 1 : 0; }},
                {"ADictionary::AStringForKey",
                 [](Objects& o) { o.number = o.walked.AStringForKey("k").length(); }},
                {"ADictionary::Remove", [](Objects& o) { o.dictionary.Remove(o.dictionary.KeyAt(0)); }},
                {"ADictionary::RemoveAll", [](Objects& o) { o.dictionary.RemoveAll(); }},
                {"Value::Value", [](Objects& o) { Value(o.value).swap(o.answeredValue); }},
                {"Value::Value Value::SetText", [](Objects& o) { Value(kLong).swap(o.answeredValue); }},
                {"Value::Value", [](Objects& o) { Value("12.5").swap(o.answeredValue); }},
                {"Value::Text", [](Objects& o) { Value::Text("12").swap(o.answeredValue); }},
                {"Value::operator=", [](Objects& o) { o.value = o.value["list"]; }},
                {"Value::operator[] Value::Entry", [](Objects& o) { static_cast<void>(o.value[kLong]); }},
                {"Value::operator[]", [](Objects& o) { static_cast<void>(o.answeredValue[5]); }},
                {"Value::operator[]",
                 [](Objects& o) {
                     o.number = (*o.read)["k"].isString() && (*o.read)["list"][3].isString() ? 1 : 0;
                 }},
                {"Value::asString Value::LogRefusal", [](Objects& o) { o.answer = o.value["k"].asString(); }},
                {"Value::asInt32", [](Objects& o) { o.number = o.value.asInt32(); }},
                {"Value::operator< Value::operator==",
                 [](Objects& o) { o.number = o.value < o.value || !(o.value == o.value) ? 1 : 0; }},
                {"Value::begin Value::end ValueIterator::ValueIterator ValueIterator::operator++ "
                 "ValueIterator::operator* "
                 "ValueIteratorBase::operator++",
                 [](Objects& o) {
                     int steps = 0;
                     for (ValueIterator at = o.value.begin(); at != o.value.end() && steps < 2; at++) {
                         ++steps;
                     }
                     o.number = steps == 2 ? 1 : 0;
                 }},
                {"ValueConstIterator::ValueConstIterator ValueConstIterator::operator= "
                 "ValueConstIterator::operator++ "
                 "ValueConstIterator::operator-- ValueIteratorBase::operator= "
                 "ValueIteratorBase::ValueIteratorBase "
                 "ValueIteratorBase::key",
                 [](Objects& o) {
                     ValueConstIterator at = o.read->begin();
                     ValueConstIterator other;
                     other = at++;
                     at--;
                     at.key().swap(o.answeredValue);
                 }},
                {"ValueIterator::operator= ValueIterator::operator-- ValueIterator::clone",
                 [](Objects& o) {
                     ValueIterator at = o.value.end();
                     at = o.value.begin();
                     at--;
                     std::unique_ptr<ValueIteratorBase>(at.clone());
                 }},
                {"ValueConstIterator::clone",
                 [](Objects& o) { std::unique_ptr<ValueIteratorBase>(o.read->begin().clone()); }},
                {"CSarnetBufferWriter::CSarnetBufferWriter",
                 [](Objects& o) { o.number = CSarnetBufferWriter(o.writer).GetBufferData().length(); }},
                {"CSarnetBufferWriter::operator=", [](Objects& o) { o.writer = o.longWriter; }},
                {"CSarnetBufferWriter::Write CSarnetBufferWriter::WriteCounted",
                 [](Objects& o) { o.writer.Write(kLong); }},
                {"CSarnetBufferWriter::Write", [](Objects& o) { o.writer.Write(o.other); }},
                {"CSarnetBufferWriter::Write", [](Objects& o) { o.writer.Write(o.writer.GetBufferData()); }},
                {"CSarnetBufferWriter::Write", [](Objects& o) { o.writer.Write(kBytes, 70); }},
                {"CSarnetBufferWriter::Write CSarnetBufferWriter::WriteNumber",
                 [](Objects& o) { o.writer.Write(static_cast<AObject const*>(&o.array)); }},
                {"CSarnetBufferWriter::Write", [](Objects& o) { o.writer.Write(o.dictionary); }},
                {"CSarnetBufferWriter::Write _tagSarnetActionBufferBase::BeforeEncode",
                 [](Objects& o) { o.writer.Write(o.record); }},
                {"CSarnetBufferReader::CSarnetBufferReader",
                 [](Objects& o) { o.number = CSarnetBufferReader(o.encoded).AtEnd() ? 0 : 1; }},
                {"CSarnetBufferReader::operator= CSarnetBufferReader::Read",
                 [](Objects& o) {
                     CSarnetBufferReader reader(o.encoded);
                     CSarnetBufferReader other("", 0);
                     other = reader;
                     int action = 0;
                     other.Read(action);
                     other.Read(o.answer);
                 }},
                {"_tagSarnetBufferBase::Encode _tagSarnetBufferBase::encode",
                 [](Objects& o) { o.record.Encode(o.answer); }},
                {"_tagSarnetBufferBase::Encode",
                 [](Objects& o) {
                     char room[400];
                     int size = sizeof room;
                     o.number = o.record.Encode(room, size);
                 }},
                {"_tagSarnetBufferBase::Decode _tagSarnetBufferBase::decode "
                 "_tagSarnetActionBufferBase::BeforeDecode",
                 [](Objects& o) { o.number = o.record.Decode(o.encoded) ? 1 : 0; }},
                {"_tagSarnetBufferBase::Decode",
                 [](Objects& o) {
                     o.number = o.record.Decode(o.encoded.data(), o.encoded.length()) ? 1 : 0;
                 }},
                {"_tagSarnetAction::Clone",
                 [](Objects&) { std::unique_ptr<AObject>(_tagSarnetAction().Clone()); }},
                {"_tagSarnetBufferBuffer::decode",
                 [](Objects& o) { o.number = o.block.Decode(kLong, 50) ? 1 : 0; }},
                {"_tagSarnetBufferBuffer::encode", [](Objects& o) { o.otherBlock.Encode(o.answer); }},
                {"_tagSarnetBufferBuffer::operator= _tagSarnetBufferBuffer::_tagSarnetBufferBuffer",
                 [](Objects& o) { o.block = o.otherBlock; }},
                {"_tagSarnetBufferBuffer::Clone",
                 [](Objects& o) { o.number = std::unique_ptr<AObject>(o.block.Clone()) != nullptr ? 1 : 0; }},
                {"_tagADetailNetworkInfo::Clone _tagADetailNetworkInfo::_tagADetailNetworkInfo",
                 [](Objects& o) {
                     std::unique_ptr<AObject> const clone(o.info.Clone());
                     o.number =
                         clone != nullptr ? static_cast<_tagADetailNetworkInfo&>(*clone).text1.length() : 0;
                 }},
                {"_tagADetailNetworkInfo::operator= _tagADetailNetworkInfo::WriteTo "
                 "_tagADetailNetworkInfo::ReadFrom",
                 [](Objects& o) {
                     _tagADetailNetworkInfo info;
                     info.text2 = "new";
                     if (info.text2 == "new") {
                         o.info = info;
                     }
                 }},
};

// What a service does, with what it tells afterwards, from its store on the disk where it has one.
struct ServiceRow {
    char const* covers;
    std::function<void()> prepare;
    std::function<void()> run;
    std::function<std::string()> state;
};

using ConfigFile = Velmor::IConfigFile;
constexpr char kUrl[] = "https://127.0.0.1";

// The values of a file that is opened anew.
std::string Stored(char const* name) {
    ConfigFile* file = VelmorCore_NewConfigFile(name);
    std::string told;
    for (char const* key : {"a", "b", "n"}) {
        char value[400] = "";
        int size = sizeof value;
        file->GetFromCache("S", key, value, &size, "none");
        told += std::string(key) + "=" + value + " ";
    }
    VelmorCore_DeleteConfigFile(&file);
    return told;
}

ConfigFile* g_file;
void StoreSome() {
    g_file = VelmorCore_NewConfigFile("Game");
    g_file->RemoveAllAndSave();
    g_file->SetAndSave("S", "a", "kept");
    g_file->SetAndSave("S", "n", 7);
}
std::string CloseAndTell() {
    VelmorCore_DeleteConfigFile(&g_file);
    return Stored("Game");
}
Bundle& TheBundle() {
    return BundleFactory::GetInstance().GetBundle("Shelf");
}
void FillBundle() {
    TheBundle().Clear();
    TheBundle().Set("S", "a", "kept");
    TheBundle().Set("S", "n", 7);
}
std::string TellBundle() {
    std::string told = TheBundle().Get("S", "a", "none").c_str();
    BundleFactory::GetInstance().DestoryBundle("Shelf");
    told += '/';
    told += TheBundle().Get("S", "a", "none").c_str();
    return told + "/" + TheBundle().Get("S", "b", "none").c_str() + "/" +
           TheBundle().Get("S", "n", "none").c_str();
}
Value SomeValues() {
    Value values;
    values["b"] = kLong;
    return values;
}

void Nothing() {}
std::string NoState() {
    return "";
}
void WriteFile(char const* path, char const* text) {
    std::ofstream(path) << text;
}
std::string Content(char const* path) {
    std::ifstream file(path);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

AString g_path;
AArray g_names;
int g_told;
// What the game does in its callback is no part of the library's operation.
char const* g_slip = "";
void LookAround() {
    if (Platform::WantUnwinds()) {
        g_slip = "a callback below a boundary";
    }
}
void Hear(Velmor::ALogPriority, char const*) {
    LookAround();
}
std::string Slip() {
    return g_slip;
}

// What a service is built on is made anew at its first use.
void ReleaseAll() {
    velmorcore_init();
    velmorcore_releaseInstance();
}

class Repeater : public OperationTargetBase {};
class Watcher : public CNetworkObserver {
public:
    void OnNetworkStateChanged(ANetworkState) override { LookAround(); }
};
class ConfigWatcher : public Velmor::RemoteConfigObserver {
public:
    void OnRemoteConfigRefreshed(Velmor::IRemoteConfig*, Velmor::IStringIterator*) override { LookAround(); }
};

// Fetches end on a thread of their own. It takes the want of memory over from the row's, and gives back
// whether there was one when it has gone.
struct Handover {
    std::atomic<long> left{0};
    std::atomic<bool> persists{false};
    std::atomic<bool> hasFailed{false};
    std::atomic<int> begun{0};
    std::atomic<int> gone{0};
} g_handover;
struct Leaving {
    ~Leaving() {
        g_handover.hasFailed = g_handover.hasFailed || t_hasFailed;
        t_left = 0;
        t_persists = false;
        ++g_handover.gone;
    }
};
class Server : public IHttpTransport {
public:
    int Perform(HttpRequest const&, IHttpExchange& exchange) override {
        static constexpr char kAnswer[] = R"({"biz_data":{"rule_id":1,"merged_cfg":{"G":{"k":1}}}})";
        static thread_local Leaving const leaving;
        static_cast<void>(&leaving);
        exchange.SetStatus(200);
        exchange.AppendBody(kAnswer, sizeof kAnswer - 1);
        ++g_handover.begun;
        t_persists = g_handover.persists.exchange(false);
        t_left = g_handover.left.exchange(0);
        return error;
    }
    std::atomic<int> error{0};
} g_server;
Velmor::RemoteConfig& TheView() {
    static Velmor::RemoteConfig view("G");
    return view;
}
bool AwaitFetches(int least) {
    for (int i = 0; i < 1000; ++i) {
        if (g_handover.begun >= least && g_handover.begun == g_handover.gone) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}
// One that goes well: whatever ran out of memory before must leave room for it.
std::string FetchAgain() {
    AwaitFetches(0);
    int const begun = g_handover.begun;
    TheView().Fetch();
    return AwaitFetches(begun + 1) ? g_slip : "no fetch any more";
}
void SetUpFetch() {
    static ConfigWatcher watcher;
    SetHttpTransport(&g_server);
    TheView().AddObserver(&watcher);
    int const begun = g_handover.begun;
    velmorcore_configure_seturl(kUrl);
    AwaitFetches(begun + 1);
}
template <int kError>
void EndFetch() {
    g_server.error = kError;
    g_handover.hasFailed = false;
    g_handover.persists = std::exchange(t_persists, false);
    g_handover.left = std::exchange(t_left, 0);
    FetchAgain();
    t_hasFailed = g_handover.hasFailed;
    g_server.error = 0;
}
// The end of one behind which another waits: it was asked for while the first still ended.
void EndFetchTwice() {
    static std::atomic<bool> asks{false};
    asks = true;
    SetUbrixLogCallback([](Velmor::ALogPriority, char const* line) {
        bool const ends = std::strstr(line, "OnDataTaskFinished error") != nullptr;
        if (ends && std::strstr(line, "httpStatus") == nullptr && asks.exchange(false)) {
            TheView().Fetch();
        }
    });
    EndFetch<HttpErrorCannotConnect>();
    SetUbrixLogCallback(nullptr);
}

ServiceRow const kServiceRows[] = {
    {"VelmorCore_NewConfigFile VelmorCore_DeleteConfigFile", StoreSome,
     [] {
         ConfigFile* file = VelmorCore_NewConfigFile("Other");
         VelmorCore_DeleteConfigFile(&file);
     },
     CloseAndTell},
    {"VelmorCore_GetDefaultHandler", StoreSome, [] { VelmorCore_GetDefaultHandler(); }, CloseAndTell},
    {"VelmorCore_DeleteConfigFile", StoreSome, [] { VelmorCore_DeleteConfigFile(&g_file); }, CloseAndTell},
    {"", StoreSome, [] { g_file->SetAndSave("S", "a", kLong); }, CloseAndTell},
    {"", StoreSome, [] { g_file->SetAndSave("S", "b", 5); }, CloseAndTell},
    {"", StoreSome,
     [] {
         g_file->SetCache("S", "b", std::int64_t{5});
         g_file->SaveCacheToFile();
     },
     CloseAndTell},
    {"", StoreSome, [] { g_file->RemoveValueForKeyAndSave("S", "n"); }, CloseAndTell},
    {"", StoreSome, [] { g_file->RemoveAllAndSave(); }, CloseAndTell},
    {"", StoreSome,
     [] {
         g_file->IsContainKey("S", "n");
         g_file->GetFromCache("S", "n", true);
     },
     CloseAndTell},
    {"BundleFactory::GetInstance BundleFactory::BundleFactory", Nothing, [] { BundleFactory::GetInstance(); },
     NoState},
    {"BundleFactory::GetDefaultBundle", FillBundle, [] { BundleFactory::GetInstance().GetDefaultBundle(); },
     TellBundle},
    {"BundleFactory::GetBundle", FillBundle,
     [] { BundleFactory::GetInstance().GetBundle("New").Set("k", 5); }, TellBundle},
    {"BundleFactory::DestoryBundle", FillBundle, [] { BundleFactory::GetInstance().DestoryBundle("Shelf"); },
     TellBundle},
    {"BundleFactory::ReleaseInstance", FillBundle, [] { BundleFactory::ReleaseInstance(); }, TellBundle},
    {"", FillBundle, [] { TheBundle().Set("S", "a", kLong); }, TellBundle},
    {"", FillBundle, [] { TheBundle().Set("S", SomeValues()); }, TellBundle},
    {"", FillBundle, [] { TheBundle().Set("k", 5); }, TellBundle},
    {"", FillBundle,
     [] {
         Value value;
         TheBundle().Get("S", value);
         TheBundle().Get("S", "a", value);
     },
     TellBundle},
    {"", FillBundle, [] { TheBundle().RemoveKey("S", "n"); }, TellBundle},
    {"", FillBundle, [] { TheBundle().RemoveSection("S"); }, TellBundle},
    {"", FillBundle,
     [] {
         AArray keys;
         TheBundle().GetKeys("S", &keys);
     },
     TellBundle},
    {"", FillBundle, [] { TheBundle().Clear(); }, TellBundle},
    {"Bundle::GetMetaString", FillBundle, [] { TheBundle().GetMetaString("S", "k", kLong); }, TellBundle},
    {"CFile::CFile CFile::Open CFile::Write CFile::Append CFile::Flush CFile::Close CFile::Read CFile::Seek",
     [] { WriteFile("file", "old"); },
     [] {
         CFile file;
         if (file.Open("file", FileModeAppend)) {
             file.Append("new", 3);
             file.Flush();
         }
     },
     [] { return Content("file"); }},
    {"CFile::Remove CFile::Rename CFile::Exist CFile::IsDir", [] { WriteFile("file", "old"); },
     [] {
         CFile::Exist("file");
         CFile::IsDir("file");
         CFile::Rename("file", "new");
     },
     [] { return Content("file") + "/" + Content("new"); }},
    {"CPath::GetAppPath CPath::GetDocPath CPath::GetCachePath CPath::GetDefaultConfigFile", Nothing,
     [] {
         CPath::GetAppPath();
         CPath::GetDocPath();
         CPath::GetCachePath();
         CPath::GetDefaultConfigFile();
     },
     NoState},
    {"CPath::CreatePath", Nothing, [] { CPath::CreatePath("one/two/three"); }, NoState},
    {"CPath::RemovePath",
     [] {
         CPath::CreatePath("one/two");
         WriteFile("beside", "kept");
     },
     [] { CPath::RemovePath("one"); }, [] { return Content("beside"); }},
    {"CPath::GetSubPath", [] { g_path = "old"; }, [] { CPath::GetSubPath(g_path, kLong, kLong); },
     [] { return std::string(g_path.c_str()); }},
    {"CPath::AppendSubPath", [] { g_path = "old"; }, [] { CPath::AppendSubPath(g_path, kLong); },
     [] { return std::string(g_path.c_str()); }},
    {"CPath::GetFileName", [] { g_path = "old"; }, [] { CPath::GetFileName("dir/name-of-a-file", g_path); },
     [] { return std::string(g_path.c_str()); }},
    {"CPath::GetFiles",
     [] {
         CPath::CreatePath("dir");
         WriteFile("dir/a", "1");
         WriteFile("dir/b", "2");
         g_names.RemoveAll();
     },
     [] { g_told = CPath::GetFiles("dir", &g_names) ? 1 : 0; },
     [] { return std::to_string(g_names.Count()); }},
    {"CSystem::GetUdid Ubrix_system_GetUUID", Nothing,
     [] {
         char id[40];
         Ubrix_system_GetUUID(id, sizeof id);
     },
     NoState},
    {"CSystem::CheckPermission Ubrix_system_CheckPermission Ubrix_system_GetIDFA Ubrix_system_IsDeviceRooted",
     Nothing,
     [] {
         Ubrix_system_CheckPermission(1);
         Ubrix_system_GetIDFA();
         Ubrix_system_IsDeviceRooted();
     },
     NoState},
    {"CTimer::CTimer CTimer::StartTimer CTimer::StopTimer", Nothing,
     [] {
         CTimer timer;
         timer.StopTimer(timer.StartTimer(
             1000, false, [](unsigned, void*) {}, nullptr));
     },
     NoState},
    {"CVelmorCore::GetInstance CVelmorCore::CVelmorCore CVelmorCore::Initialize CVelmorCore::GetVersion "
     "CVelmorCore::SetLogLevel IVelmorCore::GetInstance velmorcore_getInstance velmorcore_init "
     "velmorcore_setLogLevel",
     ReleaseAll,
     [] {
         velmorcore_init();
         velmorcore_getInstance()->GetVersion();
         velmorcore_setLogLevel(2);
     },
     NoState},
    {"CVelmorCore::ReleaseInstance velmorcore_releaseInstance",
     [] {
         velmorcore_init();
         INetwork::GetInstance();
         StoreSome();
     },
     [] { velmorcore_releaseInstance(); }, CloseAndTell},
    {"CVelmorCore::SetRemoteConfigUrl CVelmorCore::ClearRemoteConfigCache velmorcore_configure_seturl "
     "velmorcore_configure_clear Configure::GetInstance",
     StoreSome,
     [] {
         velmorcore_configure_seturl(kUrl);
         velmorcore_configure_clear();
     },
     CloseAndTell},
    {"ubrix_remoteconfig_GetBool ubrix_remoteconfig_GetDouble ubrix_remoteconfig_GetInt "
     "ubrix_remoteconfig_GetLong "
     "ubrix_remoteconfig_GetString",
     ReleaseAll,
     [] {
         char text[20];
         g_told = ubrix_remoteconfig_GetBool("k", false) || ubrix_remoteconfig_GetDouble("k", 0) != 0 ||
                  ubrix_remoteconfig_GetInt("k", 0) != 0 || ubrix_remoteconfig_GetLong("k", 0) != 0;
         ubrix_remoteconfig_GetString("k", text, sizeof text, "d");
     },
     [] { return std::to_string(g_told); }},
    {"RemoteConfig::RemoteConfig RemoteConfig::GetBool RemoteConfig::GetDouble RemoteConfig::GetInt "
     "RemoteConfig::GetLong "
     "RemoteConfig::GetString RemoteConfig::AddObserver RemoteConfig::RemoveObserver "
     "RemoteConfig::SetUserInfo RemoteConfig::Reserved1 RemoteConfig::Reserved2",
     ReleaseAll,
     [] {
         Velmor::RemoteConfig config(kLong);
         ConfigWatcher watcher;
         config.AddObserver(&watcher);
         config.GetInt("k", 0);
         char text[20];
         int size = sizeof text;
         config.GetString("k", text, &size, "d");
         config.SetUserInfo(1, kLong);
         config.RemoveObserver(&watcher);
     },
     NoState},
    {"RemoteConfig::Fetch", SetUpFetch, [] { TheView().Fetch(); }, FetchAgain},
    {"", SetUpFetch, EndFetch<0>, FetchAgain},
    {"", SetUpFetch, EndFetch<HttpErrorCannotConnect>, FetchAgain},
    {"", SetUpFetch, EndFetchTwice, FetchAgain},
    {"VelmorLogInit XLog XLog2 XLogDetail PrintLogToConsoleFormat PrintLogToConsoleFormat2 VelmorCore_XLog",
     Nothing,
     [] {
         XLog(kError, "f", 1, "F", "%s %d", kLong, 5);
         XLogDetail(kError, "f", 1, "F", "m", "s", {}, {}, 1, 1, "e", "u", "r", "%s", kLong);
         VelmorCore_XLog(kError, "f", 1, "F", kLong);
         PrintLogToConsoleFormat(kError, "f", 1, "F", "%s", kLong);
         VelmorLogInit();
     },
     NoState},
    {"SetUbrixLogLevel SetUbrixLogCallback SetConsoleOutput ACheckLogLevel VelmorCore_SetUbrixLogLevel "
     "VelmorCore_SetUbrixLogCallback VelmorSDKLog_setAllLogLevel VelmorSDKLog_setLogLevel",
     ReleaseAll,
     [] {
         VelmorCore_SetUbrixLogCallback(Hear);
         VelmorCore_SetUbrixLogLevel(kError);
         VelmorSDKLog_setAllLogLevel(2);
         VelmorSDKLog_setLogLevel("VelmorCore", 2);
         XLog(kError, "f", 1, "F", "%s", kLong);
         VelmorCore_SetUbrixLogCallback(nullptr);
     },
     Slip},
    {"UbrixInitializer::UbrixInitializer", ReleaseAll, [] { UbrixInitializer const again(kLong); }, NoState},
    {"addPlatformObject removePlatformObject", Nothing,
     [] {
         addPlatformObject(5, "Unknown");
         removePlatformObject(5);
     },
     NoState},
    {"setSarnetSendMessageCallback setSarnetSendStructCallback setSarnetSendResultCallback "
     "setSarnetSendResultStructCallback "
     "setSarnetSendBufferCallback setSarnetSendResultBufferCallback setSarnetSendResultStructBufferCallback "
     "setSarnetSendVoidMethodCallback setSarnetSendVoidMethodParamCallback "
     "setSarnetSendVoidMethodBufferCallback",
     Nothing,
     [] {
         setSarnetSendMessageCallback([](std::int64_t, std::intptr_t, std::intptr_t) {});
         setSarnetSendVoidMethodCallback([](std::int64_t, std::intptr_t) {});
     },
     NoState},
    {"ubrix_network_GetDetailNetworkInfo ubrix_network_GetNetworkState "
     "ubrix_network_SetNetworkChangedCallback "
     "INetwork::GetInstance CNetwork::GetInstance CNetwork::CNetwork CNetwork::init "
     "CNetwork::GetNetworkState "
     "CNetwork::GetDetailNetworkInfo CNetwork::SetCallback CNetwork::TheObject",
     ReleaseAll,
     [] {
         char record[100];
         ubrix_network_GetNetworkState();
         ubrix_network_GetDetailNetworkInfo(record, sizeof record);
         ubrix_network_SetNetworkChangedCallback([](ANetworkState) {});
     },
     NoState},
    {"CNetwork::AddObserver CNetwork::RemoveObserver CNetwork::ForgetObserver "
     "CNetwork::OnNetworkStateChanged "
     "CNetwork::OnNetworkStateChangedOnUIThread CNetwork::ReleaseInstance CNetworkObserver::CNetworkObserver "
     "CNetworkObserver::OnNetworkStateChanged CNetworkObserver::PopStateFromChangedList "
     "CNetworkObserver::CountOfChangedStates ubrix_target_unity_enable_ui_update ubrix_target_unity_update",
     [] { ubrix_target_unity_enable_ui_update(); },
     [] {
         Watcher watcher;
         CNetwork::GetInstance().AddObserver(&watcher);
         CNetwork::GetInstance().OnNetworkStateChanged(ANetworkStateNotReachable);
         ubrix_target_unity_update();
         CNetwork::GetInstance().RemoveObserver(&watcher);
         CNetwork::ReleaseInstance();
     },
     Slip},
    {"OperationQueue::GetInstance Operation::Operation", ReleaseAll,
     [] { OperationQueue::GetInstance()->AddOperation([](Operation*, void*) {}, nullptr, false); }, NoState},
    {"ObjectOperation::ObjectOperation ObjectOperation::Duplicate ObjectOperation::Cancel "
     "ObjectOperation::ClearTarget "
     "ObjectOperation::Link ObjectOperation::Unlink ObjectOperation::Run",
     Nothing,
     [] {
         Repeater target;
         ObjectOperation operation(&target, &OperationTargetBase::DoOperation, nullptr, false);
         std::unique_ptr<Operation>(operation.Duplicate());
     },
     NoState},
    {"WWW::Request WWW::Destroy WWW::DownloadFile WWW::GetOzkUploadTask SetHttpCaFile SetHttpConnectAddress "
     "SetHttpTransport SetOzkUploadTaskFactory",
     Nothing,
     [] {
         SetHttpCaFile(kLong);
         SetHttpConnectAddress("127.0.0.1:1");
         if (DataTask* const task = WWW::Request(kUrl)) {
             task->SetHeader("Key", kLong);
             task->SetUrl(kLong);
             WWW::Destroy(task);
         }
         if (DownloadFileTask* const task = WWW::DownloadFile(kUrl, "file")) {
             task->SetHeader("Key", kLong);
             WWW::Destroy(task);
         }
         delete WWW::GetOzkUploadTask();
     },
     NoState},
    {"FileUploader::GetInstance FileUploader::FileUploader FileUploader::OnConfigureRefreshed "
     "FileUploader::OnUploadFinished "
     "FileUploader::Upload FileUploader::Join",
     Nothing, [] { Velmor::FileUploader::GetInstance(); }, NoState},
    {"ZipArchive::ZipArchive ZipArchive::CreateZipFile ZipArchive::AddFileToZip ZipArchive::AddStreamToZip "
     "ZipArchive::CloseZipFile",
     [] { WriteFile("source", kLong); },
     [] {
         ZipArchive archive;
         g_told = archive.CreateZipFile("archive.zip") && archive.AddFileToZip("source", "source") &&
                  archive.CloseZipFile();
     },
     [] { return g_told != 0 && Content("archive.zip").empty() ? "told well, and wasn't" : ""; }},
};

constexpr std::size_t kObjectCount = std::size(kObjectRows);
constexpr std::size_t kRowCount = kObjectCount + std::size(kServiceRows);

// Fails the allocation `n`, and those after it if it `persists`. What the operation left; `*hasFailed` if
// there were as many.
std::string Fail(std::size_t row, long n, bool persists, bool* hasFailed, std::string* before) {
    bool const isObject = row < kObjectCount;
    Objects objects;
    ServiceRow const* const service = isObject ? nullptr : &kServiceRows[row - kObjectCount];
    if (!isObject) {
        service->prepare();
    }
    *before = isObject ? objects.State() : "";
    t_hasFailed = false;
    t_oursOnly = !isObject && std::strstr(service->covers, "ZipArchive") != nullptr;
    t_persists = persists;
    t_left = n;
    if (isObject) {
        kObjectRows[row].run(objects);
    } else {
        service->run();
    }
    t_left = 0;
    t_persists = false;
    *hasFailed = t_hasFailed;
    return isObject ? objects.State() : service->state();
}

// A process's work: 0 if the operation keeps its promise.
int CheckRow(std::size_t row, long most) {
    std::set<std::string> left;
    std::string before;
    std::string done;
    for (bool const persists : {false, true}) {
        for (long n = 1; n <= most; ++n) {
            bool hasFailed = false;
            std::printf("%ld %s\n", n, persists ? "and on" : "alone");
            std::fflush(stdout);
            std::string const after = Fail(row, n, persists, &hasFailed, &before);
            if (!hasFailed) {
                break;
            }
            left.insert(after);
        }
    }
    bool hasFailed = false;
    done = Fail(row, LONG_MAX, false, &hasFailed, &before);
    if (row >= kObjectCount) {
        // What was on the disk before: with nothing done.
        ServiceRow const& service = kServiceRows[row - kObjectCount];
        service.prepare();
        before = service.state();
    }
    for (std::string const& after : left) {
        if (after != before && after != done) {
            std::printf("left: %s\nbefore: %s\ndone: %s\n", after.c_str(), before.c_str(), done.c_str());
            return 1;
        }
    }
    return 0;
}

int RunRow(char const* self, std::size_t row, long most) {
    std::string const directory = "row" + std::to_string(row);
    mkdir(directory.c_str(), 0700);
    std::fflush(nullptr);
    pid_t const child = fork();
    if (child == 0) {
        if (chdir(directory.c_str()) != 0 || std::freopen("out.txt", "w", stdout) == nullptr ||
            std::freopen("err.txt", "w", stderr) == nullptr) {
            _exit(99);
        }
        execl(self, self, "row", std::to_string(row).c_str(), std::to_string(most).c_str(), nullptr);
        _exit(99);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

// Reads only, or works on what is there.
constexpr char const* kTakesNoMemory[] = {"*thunk *",
                                          "vtable for *",
                                          "typeinfo *",
                                          "VTT for *",
                                          "*::~*",
                                          "*::_[iI]nstance",
                                          "Value::Null",
                                          "AObject::*",
                                          "ANumber::*",
                                          "AArray::*AtIndex",
                                          "AArray::Count",
                                          "AArray::First*",
                                          "AArray::Last*",
                                          "AArray::operator*",
                                          "AArray::Remove*",
                                          "AData::Capacity",
                                          "AData::Data",
                                          "AData::Empty",
                                          "AData::Find",
                                          "AData::IsEqual",
                                          "AData::Size",
                                          "ADictionary::*At",
                                          "ADictionary::Count",
                                          "ADictionary::IsEqual",
                                          "AString::As*",
                                          "AString::CString",
                                          "AString::c_str",
                                          "AString::[eE]mpty",
                                          "AString::*With",
                                          "AString::Find",
                                          "AString::GetLength",
                                          "AString::length",
                                          "AString::size",
                                          "AString::Is*",
                                          "AString::at",
                                          "AString::data",
                                          "AString::operator[=!]=",
                                          "AStringBuilder::IsEqual",
                                          "AStringBuilder::ToString",
                                          "CFile::GetLength",
                                          "CFile::SeekTo*",
                                          "CSarnetBuffer*::AtEnd",
                                          "CSarnetBuffer*::GetBufferData",
                                          "CSarnetBuffer*::ReadLength",
                                          "CSarnetBuffer*::Reset",
                                          "CSarnetBuffer*::Take",
                                          "CSystem::*",
                                          "CTime::*",
                                          "CTimer::GetNextTimerId",
                                          "Operation::*",
                                          "OperationTargetBase::*",
                                          "str2int",
                                          "Value::Has*",
                                          "Value::Order*",
                                          "Value::Size",
                                          "Value::ToBits",
                                          "Value::as*",
                                          "Value::is*",
                                          "Value::operator[<>!]*",
                                          "Value::swap",
                                          "Value::type",
                                          "ValueIteratorBase::index",
                                          "ValueIteratorBase::memberName",
                                          "ValueIteratorBase::operator*",
                                          "_tagSarnetAction::*",
                                          "_tagSarnetActionBufferBase::*",
                                          "_tagSarnetBufferBase::*",
                                          "_tagSarnetBufferBuffer::ReadFrom",
                                          "_tagSarnetBufferBuffer::WriteTo"};

bool TakesNoMemory(std::string const& name) {
    return std::any_of(std::begin(kTakesNoMemory), std::end(kTakesNoMemory),
                       [&](char const* pattern) { return fnmatch(pattern, name.c_str(), 0) == 0; });
}

// Names of exports that no row covers.
int CountUncovered() {
    std::set<std::string> covered;
    auto const cover = [&covered](char const* names) {
        std::istringstream words(names);
        for (std::string word; words >> word;) {
            covered.insert(word);
        }
    };
    for (Row const& row : kObjectRows) {
        cover(row.covers);
    }
    for (ServiceRow const& row : kServiceRows) {
        cover(row.covers);
    }
    std::ifstream list(VELMORCORE_EXPORTS);
    std::set<std::string> uncovered;
    std::size_t lines = 0;
    for (std::string line; std::getline(list, line); ++lines) {
        std::string name = line.substr(0, line.find('('));
        for (char const* space : {"Ubrix::", "Velmor::"}) {
            name.erase(0, name.rfind(space, 0) == 0 ? std::strlen(space) : 0);
        }
        if (covered.count(name) == 0 && !TakesNoMemory(name)) {
            uncovered.insert(name);
        }
    }
    for (std::string const& name : uncovered) {
        std::printf("no row covers %s\n", name.c_str());
    }
    return lines < 100 ? 1 : static_cast<int>(uncovered.size());
}

}  // namespace

int main(int count, char** words) {
    if (count == 4 && std::strcmp(words[1], "row") == 0) {
        return CheckRow(std::strtoul(words[2], nullptr, 10), std::strtol(words[3], nullptr, 10));
    }
    bool const isFull = count > 1 && std::strcmp(words[1], "full") == 0;
    int failures = CountUncovered();
    for (std::size_t row = 0; row < kRowCount; ++row) {
        int const status = RunRow("/proc/self/exe", row, isFull ? 100000 : row < kObjectCount ? 60 : 12);
        if (status != 0) {
            ++failures;
            char const* const covers =
                row < kObjectCount ? kObjectRows[row].covers : kServiceRows[row - kObjectCount].covers;
            std::printf("FAILED: row%zu (%s): status %#x\n", row, covers, static_cast<unsigned>(status));
        }
    }
    std::printf("%zu operations with each allocation failed in turn, %d failures\n", kRowCount, failures);
    return failures == 0 ? 0 : 1;
}
