#pragma once

#include "tour/tour_host.h"

// What a user does at each stop, and what is to be seen there: throws TUserError where it is not.

/// Nothing was ever kept: the program brings an accounts directory of its own, and F1 has something
/// to show where the cursor stands.
void FirstStart(TTourHost& host);

/// An empty list: directories are added, renamed and deleted, one is opened. Then the list from the
/// menu.
void Directories(TTourHost& host);

/// A variable that no one declared: its type is picked, then a parameter gets another value, and
/// the host receives the rewritten line.
void Assistant(TTourHost& host);

/// A long chain of members, walked back and forth, then left by Cancel.
void Chain(TTourHost& host);

/// An object without a member yet: type and member are picked from their lists, its parameters
/// given and taken away, and the line gone on with.
void Member(TTourHost& host);

/// A function of the language; its parameters explained.
void FunctionCall(TTourHost& host);

/// A parameter's value put together from constants, some of which combine.
void Constants(TTourHost& host);

/// The types of the script's variables: one is added, renamed, given a type, and one is deleted;
/// first left as they were, then kept.
void Types(TTourHost& host);

/// The base dialog, modal and inside a window of the host, then a view; their calls traced.
void Dialogs(TTourHost& host);

/// The help of the word under the mouse.
void Bubble(TTourHost& host);

/// The type filter with each kind of choice, and what the host shows after it.
void Filter(TTourHost& host);

/// The host's window comes back where it was left.
void Place(TTourHost& host);

/// A new version, offered and downloaded.
void Update(TTourHost& host);
