#include "platform/testing/system_trace.h"

namespace pcg {
namespace platform_testing {

void SilenceSystemTrace(bool) {}

}  // namespace platform_testing
}  // namespace pcg
