// Loaded by the module tests. Its counter starts afresh on every real load,
// which tells an unloaded library from one that stayed mapped.
extern "C" {

int PlatformProbeAnswer() { return 42; }

static int g_nBumps = 0;
int PlatformProbeBump() { return ++g_nBumps; }

}
