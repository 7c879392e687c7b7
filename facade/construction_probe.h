// A seam for tests of the facade's construction: when set, it is called once
// the base and every member of a facade are built, before the constructor's
// own steps. Tests use it to tell the building of members from the steps
// after it. Null outside tests.
#pragma once

namespace pcg {
namespace facade {

extern void (*g_pfnMembersBuilt)();

}  // namespace facade
}  // namespace pcg
