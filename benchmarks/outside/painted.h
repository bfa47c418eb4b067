#pragma once

#include <windows.h>

#include <functional>
#include <string>

/// Dialogs on screen, as the measurements meet them. One at a time, on the main thread.

/// Seconds since some moment.
double Seconds();

/// Opens a dialog by a call that ends when the dialog does. Once the dialog of that class is
/// painted, acts on it and closes it. Gives the seconds from the call until it was painted.
double SecondsToPainted(const wchar_t* className, const std::function<void()>& open,
                        const std::function<void(HWND)>& act = {});

/// The least of several such openings, and of as many of a bare native dialog made of the same
/// controls: by turns, so that what else the machine does slows both alike.
void PrintAgainstBare(const std::string& subject, int rounds, const wchar_t* className,
                      const std::function<void()>& open);
