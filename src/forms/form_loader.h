#pragma once

#include <memory>
#include <string>
#include <vector>

#include "forms/control.h"
#include "forms/rules/layout.h"

class TForm;

/// The layout of a class over those of the classes it inherits. Throws TLayoutError when one of
/// them is missing or wrong.
TLayout LoadLayout(const std::string& className);

/// A control of the kind that its layout names, yet without a window.
std::unique_ptr<TControl> MakeControl(TForm& form, const TLayoutItem& layout);

/// The order in which Tab and screen readers meet the controls: a control without a place of its
/// own (a label) comes right before the next one that has one.
std::vector<TControl*> TabSequence(const std::vector<TControl*>& controls);
