// The facades alive in the process and the callback loops running on each.
// A loop may run on a facade's own thread or, through the module function
// ProcessCallback, on a script's; the destructor must see every one of them
// end before the ring goes, and a script may only start a loop on a facade
// that lives. Safe on any thread.
#pragma once

#include <cstdint>

class PyClipGrade;

namespace pcg {
namespace events {

void RegisterLiveFacade(PyClipGrade* facade);
// From now on no loop can start on the facade; loops running go on.
void UnregisterLiveFacade(PyClipGrade* facade);
// Counts a loop that is about to start on the facade's own thread, so that
// the count is right before that thread has run.
void ReserveCallbackLoop(PyClipGrade* facade);
void CancelCallbackLoopReservation(PyClipGrade* facade);
// A loop begins: false, and nothing counted, for a facade that is not alive.
// A reserved start is taken up instead of counted again.
bool EnterCallbackLoop(PyClipGrade* facade);
// A loop ended; `byStopCommand` when it consumed command 7.
void LeaveCallbackLoop(PyClipGrade* facade, bool byStopCommand);
int32_t RunningCallbackLoops(PyClipGrade* facade);
// Stop commands posted by the destructor and not yet consumed by a loop.
void NoteStopPosted(PyClipGrade* facade);
int32_t OutstandingStops(PyClipGrade* facade);
// Waits until the count of running loops changes or the time is up.
void WaitCallbackLoopsChange(PyClipGrade* facade, int32_t seen, uint32_t timeoutMs);
// Forgets the facade's record; the destructor's last act here.
void ForgetFacade(PyClipGrade* facade);
// True for a facade that lives (registered and not unregistered).
bool IsLiveFacade(const void* pointer);

}  // namespace events
}  // namespace pcg
