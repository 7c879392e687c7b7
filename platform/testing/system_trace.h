// Test-only: keeps lines that tests send to the system trace out of the
// machine's log. On POSIX the built-in trace module then drops them instead of
// writing to syslog; on Windows the system drops events that no session
// collects, so there is nothing to do.
#pragma once

namespace pcg {
namespace platform_testing {

void SilenceSystemTrace(bool silenced);

}  // namespace platform_testing
}  // namespace pcg
