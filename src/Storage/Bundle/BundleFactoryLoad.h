// What the load calls to have the factory before the first export is served.
#pragma once

namespace Ubrix {

// Makes what the factory needs before its first bundle. Opens no file.
void CreateBundleFactory();

}  // namespace Ubrix
