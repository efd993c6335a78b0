// What the load calls to have the factory stand before the first export is served.
#pragma once

namespace Ubrix {

// Makes the factory if none stands. Opens no file.
void CreateBundleFactory();

}  // namespace Ubrix
