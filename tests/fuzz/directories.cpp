#include "../rules/directory_trial.h"
#include "fuzz.h"

static const bool directories = Target("directories", SaveAgainAndAgain);
