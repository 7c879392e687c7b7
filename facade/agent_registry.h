// The agents that live facades of this process hold. A script carries an
// agent between facades as text; the text is only a number, so before a
// facade takes a reference on the agent it names, the number is checked
// against this set. A stale or made-up number would otherwise be called
// through as an agent and take the host process down.
#pragma once

class IVXHvnDspAgent;

namespace pcg {
namespace facade {

// A facade took a reference on `agent`.
void RegisterHeldAgent(IVXHvnDspAgent* agent);
// A facade let go of its reference on `agent`.
void UnregisterHeldAgent(IVXHvnDspAgent* agent);
// True when some live facade holds `agent`.
bool IsHeldAgent(const IVXHvnDspAgent* agent);

}  // namespace facade
}  // namespace pcg
