#pragma once

#include <memory>

#include "forms/form.h"
#include "forms/hint_window.h"

/// The windows that the library keeps between calls. Each is made by the first call that needs it
/// and destroyed only by ReleaseSingletons. User-interface thread only.

/// Forms, in the order in which they are destroyed, after the hint bubble.
enum class TFormSlot { DebugWindow, Assistant, TypeFilter, DirectoryList };

/// The form in a slot, or null; a form whose window the system destroyed is given up first.
TForm* FormInSlot(TFormSlot slot);
void PutFormInSlot(TFormSlot slot, std::unique_ptr<TForm> form);

/// The bubble of the hint exports, or null.
std::unique_ptr<THintWindow>& HintBubble();
bool& HintShown();

/// Destroys them all: the hint bubble, then the slots in their order.
void ReleaseSingletons();

/// Whether the library has windows, kept here or not, or is in the middle of a call.
bool HasWindows();
/// The thread of the windows has ended, and they with it: nothing is left of them.
void ForgetWindows();

/// The slot's form, made now if there is none. One class per slot.
template <class T>
T& SingletonForm(TFormSlot slot) {
  if (!FormInSlot(slot)) PutFormInSlot(slot, CreateForm<T>());
  return static_cast<T&>(*FormInSlot(slot));
}
