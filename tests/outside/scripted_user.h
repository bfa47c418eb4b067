#pragma once

#include <atomic>
#include <functional>

#include "outside/input_barrier.h"
#include "user/form_driver.h"
#include "user/user.h"

/// A user of this process's own windows, who acts from a second thread while the user-interface
/// thread sits in the library. Each act returns when the user-interface thread is done with it.
class TScriptedUser : public TUser {
 public:
  /// On the user-interface thread.
  TScriptedUser() : TUser(GetCurrentProcessId()) {}

  /// Makes the call in this thread while the script runs in another, then serves messages until the
  /// script has ended. A script that fails is a test failure with the steps and the window tree;
  /// the forms it left open are closed. A call that does not return even so ends the process.
  void During(const std::function<void()>& call, const std::function<void(TScriptedUser&)>& script);
  /// The script alone: there is no call whose return would make its waits hopeless.
  void WhileIdle(const std::function<void(TScriptedUser&)>& script);

 protected:
  void Settle() override;
  std::string Hopeless() const override;

 private:
  void Act(const std::function<void(TScriptedUser&)>& script);
  void CloseForms();

  TInputBarrier FBarrier;
  std::atomic<bool> FCallEnded = false;
  std::atomic<ULONGLONG> FHopelessFrom = 0;  ///< in ticks; 0: not at all
  std::atomic<bool> FScriptEnded = false;
  bool FIdle = false;
};
