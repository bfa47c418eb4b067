#pragma once

#include <functional>

#include "user/form_driver.h"
#include "user/input_barrier.h"
#include "user/user.h"

/// A user of this process's own windows, who acts from a second thread while the user-interface
/// thread sits in the library. Each act returns when the user-interface thread is done with it.
class TScriptedUser : public TUser {
 public:
  /// On the user-interface thread.
  TScriptedUser() : TUser(GetCurrentProcessId()) {}

  /// Makes the call in this thread while the script runs in another, then serves messages until the
  /// script has ended. A script that fails ends the process, which nothing else could get out of
  /// the call, and tells its steps and the window tree.
  void During(const std::function<void()>& call, const std::function<void(TScriptedUser&)>& script);

 protected:
  void Settle() override;

 private:
  TInputBarrier FBarrier;
};
