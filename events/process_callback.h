// The callback thread's entry, which scripts may also run on their own thread.
#pragma once

// Takes events out of the facade's ring and delivers them until command 7
// arrives; a null parameter returns at once. `parameter` is the facade; one
// that is not a live facade is refused with a log line.
void ProcessCallback(void* parameter);
