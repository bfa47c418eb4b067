#pragma once

#include <windows.h>

#include <functional>

/// Dialogs on screen, as the measurements meet them. One at a time, on the main thread.

/// Seconds since some moment.
double Seconds();

/// Opens a dialog by a call that ends when the dialog does. Once the dialog of that class is
/// painted, acts on it and closes it. Gives the seconds from the call until it was painted.
double SecondsToPainted(const wchar_t* className, const std::function<void()>& open,
                        const std::function<void(HWND)>& act = {});

/// The least of several such openings.
double LeastToPainted(int rounds, const wchar_t* className, const std::function<void()>& open);

/// A native dialog made of the same controls as the last one that was painted.
void OpenBareDialog();
constexpr wchar_t kBareClass[] = L"BareDialog";
