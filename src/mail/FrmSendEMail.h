// The window that mails the log of a failed operation.
#pragma once

namespace tandemize {

// Sends the error notice, or says in the log that this version cannot: there is no mail client yet. Never
// fails its caller.
void MostraFrmSendEMail();

}  // namespace tandemize
