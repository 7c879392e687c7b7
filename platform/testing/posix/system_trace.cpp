#include "platform/testing/system_trace.h"

#include "platform/posix/trace_module.h"

namespace pcg {
namespace platform_testing {

namespace {
const platform::posix::TraceModuleHook kDropEverything = {nullptr, nullptr, nullptr};
}

void SilenceSystemTrace(bool silenced) { platform::posix::SetTraceModuleHook(silenced ? &kDropEverything : nullptr); }

}  // namespace platform_testing
}  // namespace pcg
