// A share of the one bundle on a file.
#pragma once

#include <VelmorCore/Bundle.h>

#include <string>

namespace Ubrix {

// Keeps the bundle on one file for as long as it lives, beside all others who do, GetBundle's callers
// included. The last to go takes the bundle along; one that goes before saves it. Made and used by one thread
// at a time.
class BundleHold {
public:
    // Holds nothing.
    BundleHold() = default;
    ~BundleHold();
    BundleHold(BundleHold const&) = delete;
    BundleHold& operator=(BundleHold const&) = delete;

    // Gives the bundle on the file at `path`, made if nobody has it. Once.
    Bundle& Take(std::string path);

private:
    // Empty: none.
    std::string _path;
};

}  // namespace Ubrix
