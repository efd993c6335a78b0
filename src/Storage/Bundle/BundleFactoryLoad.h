// What the load calls to have the factory before the first export is served.
#pragma once

namespace Ubrix {

// Makes what the factory needs before its first bundle. Opens no file. On the loading thread; a later
// call finds all made.
void CreateBundleFactory();

}  // namespace Ubrix
