// What the modules of the FTP session share among themselves.
#pragma once

namespace tandemize {

// A stop that was asked for before now belongs to an operation that is over, and no longer ends a wait.
void ArrestiDaQui();
// As before the first use: no noted failure, the limits of a new session.
void AzzeraSessioneFtp();

}  // namespace tandemize
