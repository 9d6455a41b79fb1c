// Asks a developer, who has a debugger on the host, whether to burn with the burner that lies beside it.
#pragma once

namespace LocalBurnQuestion {

// Has the burner's client ask from then on. Where nobody can be asked the answer is no.
void Install();

} // namespace LocalBurnQuestion
