#pragma once
// Whether the member signed out in this run. The stored phone and password outlive a
// sign-out (the next start signs in again with them), but the login screen opened after
// it must not hand the password back to whoever holds the device. The note lives with
// the shared session: GlobalData::resetSharedInstance forgets it, and so does a login.
namespace qmv::sign_out_note {

void note();
void forget();
bool noted();

}  // namespace qmv::sign_out_note
