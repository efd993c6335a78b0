#include "Base/Configure/ConfigFileName.h"

#include <algorithm>
#include <string>

#include "Base/Container/AsciiText.h"
#include "Storage/File/IniText.h"

namespace Velmor {

namespace {

// With what a file's name grows by in the making, within the 255 bytes that file systems give a name.
constexpr std::size_t kMaxLength = 200;

constexpr char kEnd[] = ".config";

bool IsForbidden(char character) {
    constexpr std::string_view kReserved = "/\\<>:\"|?*\x7F";
    return static_cast<unsigned char>(character) < 0x20 ||
           kReserved.find(character) != std::string_view::npos;
}

// Windows takes what is in front of the first point, blanks at its end apart.
bool NamesDevice(std::string_view upperName) {
    constexpr std::string_view kDevices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    std::string_view stem = upperName.substr(0, upperName.find('.'));
    stem = stem.substr(0, stem.find_last_not_of(' ') + 1);
    bool const isPort = stem.size() == 4 && (stem.substr(0, 3) == "COM" || stem.substr(0, 3) == "LPT") &&
                        stem[3] >= '0' && stem[3] <= '9';
    return isPort || std::find(std::begin(kDevices), std::end(kDevices), stem) != std::end(kDevices);
}

}  // namespace

bool CanNameConfigFile(std::string_view name) {
    std::string const upper = Ubrix::UpperAscii(std::string(name));
    // In any case: there are systems where that is the same file.
    bool const isOurs = upper == "REMOTECONFIG" || upper == "VELMOR";
    return name.size() <= kMaxLength && name != "." && name != ".." && !isOurs && !NamesDevice(upper) &&
           std::none_of(name.begin(), name.end(), IsForbidden) &&
           Ubrix::IniText::CanBeKey(std::string(name) + kEnd);
}

}  // namespace Velmor
